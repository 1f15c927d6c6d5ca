# SPDX-License-Identifier: MIT
"""Every way to end a selection without a capture: nothing is copied, shown or logged."""

import os
import signal
import unittest

from support import desktop, main
from support.comparing import (is_dimmed, is_unchanged, wait_until_dimmed,
                               wait_until_unchanged)
from support.desktop import Clipboard, Pointer, key, points
from support.page import Page
from support.program import Program, activate_action
from support.waiting import holds_for, wait_until

TEXT = "Not to be copied"
BOTH = {"outputMode": "both"}
IS_WAYLAND = desktop.NAME in ("sway", "kwin_wayland", "gnome")


class CancelTest(unittest.TestCase):
    def assert_cancelled(self, program, before):
        wait_until_unchanged("the overlay's end", before)
        holds_for("without a result", lambda: Clipboard.text() == "before"
                  and is_unchanged(before) and program.is_running(), 0.5)

    def test_escape(self):
        with Page(TEXT), Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            key("Escape")
            self.assert_cancelled(program, before)

    def test_escape_during_a_drag(self):
        with Page(TEXT) as page, Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom),
                         release=False)
            key("Escape")
            wait_until_unchanged("the overlay's end", before)
            Pointer.release()
            self.assert_cancelled(program, before)

    def test_other_keys_do_nothing(self):
        with Page(TEXT) as page, Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            key("Return")
            key("a")
            key("Escape")
            self.assert_cancelled(program, before)
            self.assertEqual(page.said(r"key \d+"), [])

    def test_click(self):
        with Page(TEXT) as page, Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            Pointer.click(*page.box.middle)
            self.assert_cancelled(program, before)
            self.assertEqual(page.said(r"click .*"), [])

    def test_small_drag(self):
        with Page(TEXT) as page, Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            x, y = page.box.x, page.box.y
            Pointer.drag((x, y), (x + points(200), y + points(2)))
            self.assert_cancelled(program, before)

    @unittest.skipIf(desktop.NAME == "none", "needs a window manager")
    def test_another_program_comes_to_the_front(self):
        with Page(TEXT), Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            window, = desktop.windows_titled("Text page")
            desktop.activate(window)
            self.assert_cancelled(program, before)

    @unittest.skipIf(IS_WAYLAND, "xprop needs an X server")
    @unittest.skipIf(desktop.NAME == "none", "needs a window manager")
    def test_a_panel_that_takes_room_cancels_nothing(self):
        def room():
            return desktop.tool("xprop", "-root", "_NET_WORKAREA")

        with Page(TEXT), Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            free = room()
            window, = desktop.windows_titled("Text page")
            # Below, from the left edge to the right one.
            strut = [0, 0, 0, 190, *[0] * 7, desktop.SCREENS[0].width - 1]
            desktop.tool("xprop", "-id", window, "-f", "_NET_WM_STRUT_PARTIAL", "32c", "-set",
                         "_NET_WM_STRUT_PARTIAL", ",".join(map(str, strut)))
            wait_until("less room", lambda: room() != free)
            holds_for("dimmed", lambda: is_dimmed(before), 0.5)
            key("Escape")
            self.assert_cancelled(program, before)

    @unittest.skipIf(IS_WAYLAND, "xrandr needs an X server")
    def test_screens_come_and_go(self):
        screen = desktop.SCREENS[0]
        half = f"{screen.width // 2}/200x{screen.height}/200"
        with Page(TEXT), Program(BOTH) as program:
            Clipboard.put("before")
            before, item = program.start_capture(), program.status_item()
            desktop.tool("xrandr", "--setmonitor", "left", f"{half}+0+0", "screen")
            desktop.tool("xrandr", "--setmonitor", "right", f"{half}+{screen.width // 2}+0", "none")
            self.assert_cancelled(program, before)
            # The panel may have gone with its screen's edge, so not by a click.
            activate_action("capture")
            wait_until_dimmed(before, "the dim on both screens")
            desktop.tool("xrandr", "--delmonitor", "right")
            desktop.tool("xrandr", "--delmonitor", "left")
            self.assert_cancelled(program, before)
            wait_until("the panel as it was", lambda: desktop.find_tray_icon() == item)

    def test_being_ended(self):
        with Page(TEXT), Program(BOTH) as program:
            Clipboard.put("before")
            before = program.start_capture()
            os.kill(program.process.pid, signal.SIGTERM)
            program.wait_for_end()
            wait_until_unchanged("the overlay's end", before)
            self.assertEqual(Clipboard.text(), "before")

    def test_a_capture_works_after_a_cancelled_one(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            before = program.start_capture()
            key("Escape")
            wait_until_unchanged("the overlay's end", before)
            program.capture(page.box)
            # Recognition takes long where leaks are told by whole stacks, as on Wayland.
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT, 60)


if __name__ == "__main__":
    main()
