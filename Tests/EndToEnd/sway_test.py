# SPDX-License-Identifier: MIT
"""What is different on sway: keys, menu, clipboard, screens and windows that Wayland guards."""

import os
import re
import signal
import subprocess
import tempfile
import unittest

from support import desktop, main
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer, key, points, screenshot
from support.page import Page
from support.pressing import assert_captures
from support.program import Program, binary, wait_until_launched
from support.sway import command, float_pages
from support.waiting import wait_until
from support.wayland_tests import SHORTCUT_ON, TEXT, ClipboardTests, ShortcutTests


class SwayTest(ShortcutTests, ClipboardTests, unittest.TestCase):
    # The configuration binds it.
    TAKEN = "cmd+shift+d"

    # The shortcut

    def test_shortcut_outlives_a_reload(self):
        with Page(TEXT), Program(SHORTCUT_ON):
            wait_until_launched()
            assert_captures("super+shift+o")
            before = settled_screenshot()
            command("reload")
            float_pages()
            # The reload is over, and the program has been told, when sway takes the next command.
            wait_until_launched()
            wait_until_unchanged("the desktop of before", before)
            assert_captures("super+shift+o")

    # The status item

    def menu(self, program):
        """A right click; where the menu is, and what the screens showed before."""
        program.status_item()
        before = settled_screenshot()
        program.click(button=3)
        found = []

        def is_steady():
            now = desktop.difference(before, screenshot())
            found.append(now)
            # Not the icon alone, which is lit first.
            return now and now.height > points(40) and found[-2:] == [now, now]

        wait_until("the menu", is_steady)
        # It hangs above the bar; the rest of the difference is the lit icon.
        box = found[-1]
        return box._replace(height=desktop.SCREENS[0].bottom - points(14) - box.y), before

    def test_capture_from_the_menu(self):
        with Program({}) as program:
            box, before = self.menu(program)
            Pointer.click(box.middle[0], box.y + points(18))
            Pointer.rest()
            wait_until_dimmed(before)
            key("Escape")
            wait_until_unchanged("the overlay's end", before)

    def test_quit_from_the_menu(self):
        with Program({}) as program:
            box, _ = self.menu(program)
            Pointer.click(box.middle[0], box.bottom - points(16))
            self.assertEqual(program.wait_for_end(), 0)

    # The overlay

    def test_the_layer_goes_before_its_surface(self):
        """When the program ends during a selection; wlroots takes another order for an error."""
        # On the stream of the log, which is another file's here.
        to_file = ["sh", "-c", 'exec "$0" 2>"$1"', binary()]
        with tempfile.NamedTemporaryFile("r") as requests:
            with Program({}, {"WAYLAND_DEBUG": "client"},
                         command=[*to_file, requests.name]) as program:
                before = program.start_capture()
                os.kill(program.process.pid, signal.SIGTERM)
                program.wait_for_end()
                wait_until_unchanged("the overlay's end", before)
            lines = requests.read().splitlines()
        # "wl_surface@7", and "wl_surface#7" in later versions of Wayland's library.
        said = [line.replace("#", "@") for line in lines]
        layers = [(number, found)
                  for number, line in enumerate(said)
                  if (found := re.search(r"get_layer_surface\(new id (\S+), (\S+),", line))]
        self.assertEqual(len(layers), len(desktop.SCREENS))
        for start, found in layers:
            ends = [next((number for number, line in enumerate(said[start:])
                          if f"{name}.destroy()" in line), None) for name in found.groups()]
            self.assertNotIn(None, ends, "neither the layer nor its surface may be left")
            self.assertLess(*ends, "the surface went first")

    # The clipboard

    def test_every_name_of_plain_text(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            for name in ("text/plain;charset=utf-8", "text/plain", "UTF8_STRING", "STRING", "TEXT"):
                pasted = desktop.tool("wl-paste", "--no-newline", "--type", name)
                self.assertEqual((name, pasted), (name, TEXT))

    def test_a_reader_that_goes_away_does_no_harm(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            for _ in range(20):
                with subprocess.Popen(["wl-paste", "--no-newline"],
                                      stdout=subprocess.PIPE) as reader:
                    reader.kill()
            self.assertEqual(Clipboard.text(), TEXT)

    # The result window

    def test_first_result_window_in_the_corner_stands_on_the_bar(self):
        screen = desktop.SCREENS[0]
        with Page(TEXT, Page.corner_box(above=40)) as page, Program({"outputMode": "popup"}) as program:
            program.capture(page.box)
            popup = program.popup()
            # Exactly, though sway has told nothing of title bars before this window.
            wait_until(f"the result window in the corner, not at {desktop.frame_box(popup)}",
                       lambda: desktop.frame_box(popup)[2:] != (0, 0)
                       and (desktop.frame_box(popup).right, desktop.frame_box(popup).bottom)
                       == (screen.right, screen.bottom - points(28)))
            content = desktop.window_box(popup)
            self.assertEqual((content.width, content.height), (points(360), points(240)))
            Pointer.click(content.right - points(55), content.bottom - points(22))
            wait_until("the copied text", lambda: Clipboard.text() == TEXT)

    def test_result_window_has_a_title_bar_and_keeps_its_size(self):
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            before = program.capture(page.box)
            popup = program.popup()
            wait_until("a title bar", lambda: desktop.window_box(popup).y
                       > desktop.frame_box(popup).y + points(10))
            command(f"[con_id={popup}] resize set 420 px 300 px")
            wait_until("the new size", lambda: desktop.frame_box(popup).width == points(420))
            resized = desktop.frame_box(popup)
            key("Escape")
            wait_until_unchanged("the result window's end", before)
            program.capture(page.box)
            again = program.popup()
            # The frame's size is kept, and given to the content.
            wait_until("the kept size",
                       lambda: (desktop.window_box(again).width, desktop.window_box(again).height)
                       == (resized.width, resized.height))


if __name__ == "__main__":
    main()
