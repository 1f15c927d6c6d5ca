# SPDX-License-Identifier: MIT
"""What is different on KWin's Wayland: shortcuts, the permission to see the screen, and windows."""

import re
import unittest

from support import desktop, main, status_notifier
from support.artifacts import keep
from support.built_entry import copied_program, with_entry
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer, points
from support.kwin import is_there, minimise
from support.page import Page
from support.pressing import assert_captures
from support.program import POPUP_TITLE, Program, activate_action, wait_until_launched
from support.waiting import wait_until
from support.wayland_tests import SHORTCUT_ON, TEXT, ClipboardTests, ShortcutTests

TOOL_TIP = "Left-click to capture text · Right-click for menu"
NOT_GRANTED = "Screen Recording permission not granted — left-click to try again"
REFUSED = "Vellora: Screen Recording permission not granted: KWin .* {}[.] Install Vellora, .*"
CLIPBOARD = {"outputMode": "clipboard"}


class KWinTest(ShortcutTests, ClipboardTests, unittest.TestCase):
    # KWin's own, for the next window.
    TAKEN = "cmd+d"

    # The shortcut

    def test_shortcut_on_a_digit(self):
        with Page(TEXT), Program({**SHORTCUT_ON, "hotkeyString": "cmd+shift+4"}):
            wait_until_launched()
            assert_captures("super+shift+4")

    # The permission

    @staticmethod
    def mark(begin):
        """The tool tip and what a screen reader says of the icon, if the tool tip begins so."""
        tip, icon = status_notifier.tool_tip_text(), str(status_notifier.read("IconAccessibleDesc"))
        return (tip, icon) if tip.startswith(begin) else None

    def test_without_the_desktop_entry_there_is_no_picture(self):
        copy = copied_program()
        with Page(TEXT), Program({}, command=[str(copy)]) as program:
            wait_until_launched()
            before = settled_screenshot()
            activate_action("capture")
            # At once, not after the two minutes in which the program looks again.
            # All of it by one look: it goes after three seconds.
            tip, icon = wait_until("the mark", lambda: self.mark(NOT_GRANTED))
            self.assertIn(str(copy), tip)
            self.assertEqual(icon, "Permission needed")
            program.logged(REFUSED.format(re.escape(str(copy))))
            wait_until("the mark's end", lambda: status_notifier.tool_tip_text() == TOOL_TIP)
            wait_until_unchanged("what was there before", before)

    def test_capture_begins_once_the_desktop_entry_is_there(self):
        copy = copied_program()
        with Page(TEXT) as page, Program(CLIPBOARD, command=[str(copy)]) as program:
            wait_until_launched()
            before = settled_screenshot()
            activate_action("capture")
            program.logged(REFUSED.format(re.escape(str(copy))))
            with with_entry(copy):
                wait_until_dimmed(before)
                Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    # The result window

    def test_result_window_stays_on_the_screen_and_out_of_the_task_bar(self):
        screen = desktop.SCREENS[0]
        with Page(TEXT, Page.corner_box(above=40)) as page, Program({"outputMode": "popup"}) as program:
            program.capture(page.box)
            popup = program.popup()
            wait_until("the result window in the corner",
                       lambda: desktop.frame_box(popup).right == screen.right)
            frame, content = desktop.frame_box(popup), desktop.window_box(popup)
            self.assertGreater(content.y, frame.y + points(10), "no title bar")
            # Above waybar, which has the lower edge.
            self.assertLessEqual(frame.bottom, screen.bottom - points(28))
            self.assertGreater(frame.bottom, screen.bottom - points(76))
            self.assertNotIn(POPUP_TITLE, desktop.listed_windows().values())

    def test_minimised_result_window_is_closed(self):
        """KWin gives every window with a title bar the button, but this one has no entry in the task
        bar to come back from."""
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            program.capture(page.box)
            popup = program.popup()
            keep("result-window")
            minimise(popup)
            wait_until("the result window's end", lambda: not is_there(popup))

    # The window of updates

    def test_update_window_stands_in_the_middle(self):
        """Where KWin puts windows that choose no place."""
        screen = desktop.SCREENS[0]
        middle = screen.width // 2, (screen.height - points(28)) // 2
        with Program({}):
            wait_until_launched()
            activate_action("check-for-updates")
            window, = wait_until("the window", lambda: desktop.windows_titled("Vellora Update"))
            wait_until(f"the window at {middle}", lambda: all(
                abs(is_at - should) <= points(1)
                for is_at, should in zip(desktop.frame_box(window).middle, middle)))


if __name__ == "__main__":
    main()
