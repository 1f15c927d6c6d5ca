# SPDX-License-Identifier: MIT
"""What is different on KWin's Wayland: shortcuts, the permission to see the screen, and windows."""

import os
import shutil
import unittest
from pathlib import Path

from support import desktop, main, status_notifier
from support.desktop import points, screenshot
from support.page import Page
from support.pressing import assert_captures
from support.program import (POPUP_TITLE, Program, activate_action, is_unchanged,
                             wait_until_launched)
from support.waiting import holds_for, wait_until
from support.wayland_tests import SHORTCUT_ON, TEXT, ClipboardTests, ShortcutTests

TOOL_TIP = "Left-click to capture text · Right-click for menu"
NOT_GRANTED = "Screen Recording permission not granted — left-click to try again"


class KWinTest(ShortcutTests, ClipboardTests, unittest.TestCase):
    # KWin's own, for the next window.
    TAKEN = "cmd+d"

    # The shortcut

    def test_shortcut_on_a_digit(self):
        with Page(TEXT), Program({**SHORTCUT_ON, "hotkeyString": "cmd+shift+4"}):
            wait_until_launched()
            assert_captures("super+shift+4")

    # The permission

    def test_without_the_desktop_entry_there_is_no_picture(self):
        # The same program under a name that no entry has.
        folder = Path(os.environ["XDG_RUNTIME_DIR"]) / "bin"
        folder.mkdir()
        copy = shutil.copy2(os.environ["VELLORA_BINARY"], folder / "vellora")
        with Page(TEXT), Program({}, command=[str(copy)]):
            wait_until_launched()
            before = screenshot()
            activate_action("capture")
            holds_for("without an overlay", lambda: is_unchanged(before), 2)
            # The program looks for two minutes whether the permission has come.
            wait_until("the mark", lambda: status_notifier.tool_tip() == NOT_GRANTED, 180)
            self.assertEqual(str(status_notifier.read("IconAccessibleDesc")), "Permission needed")
            wait_until("the mark's end", lambda: status_notifier.tool_tip() == TOOL_TIP)
            self.assertTrue(is_unchanged(before))

    # The result window

    def test_result_window_stays_on_the_screen_and_out_of_the_task_bar(self):
        screen = desktop.SCREENS[0]
        box = Page.usual_box()
        box = box._replace(x=screen.right - box.width - points(10),
                           y=screen.bottom - box.height - points(40))
        with Page(TEXT, box) as page, Program({"outputMode": "popup"}) as program:
            program.capture(page.box)
            popup = program.popup()
            wait_until("the result window in the corner",
                       lambda: desktop.frame_box(popup).right == screen.right)
            frame, content = desktop.frame_box(popup), desktop.window_box(popup)
            self.assertGreater(content.y, frame.y + points(10), "no title bar")
            self.assertLessEqual(frame.bottom, screen.bottom)
            self.assertGreater(frame.bottom, screen.bottom - points(48))
            self.assertNotIn(POPUP_TITLE, desktop.listed_windows().values())


if __name__ == "__main__":
    main()
