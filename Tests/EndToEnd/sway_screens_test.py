# SPDX-License-Identifier: MIT
"""Screens that change while one is selecting on sway. Sway takes no screen back that it made, so
this has a desktop of its own."""

import unittest

from support import desktop, main
from support.desktop import Clipboard, key, screenshot
from support.page import Page
from support.program import Program, activate_action
from support.sway import command
from support.waiting import holds_for, wait_until

TEXT = "Not to be copied"
SCREEN = desktop.SCREENS[0]
CORNER = SCREEN.x + 4, SCREEN.y + 4


def corner():
    """The wallpaper in the first screen's corner, as it is seen now."""
    return screenshot()[CORNER[1], CORNER[0]]


def is_dim():
    return abs(corner() - round(desktop.WALLPAPER * 0.75)).max() <= 2


def is_clear():
    return (corner() == desktop.WALLPAPER).all()


class SwayScreensTest(unittest.TestCase):
    def assert_ends_selection(self, change):
        activate_action("capture")
        wait_until("the dim", is_dim)
        command(change)
        wait_until("the overlay's end", is_clear)
        holds_for("without an overlay", is_clear, 0.3)

    def test_screens_change(self):
        with Page(TEXT), Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.status_item()
            self.assert_ends_selection("create_output")
            self.assert_ends_selection("output HEADLESS-2 scale 2")
            self.assert_ends_selection("output HEADLESS-2 transform 90")
            self.assertEqual(Clipboard.text(), "before")
            self.assertTrue(program.is_running())
            activate_action("capture")
            wait_until("the dim", is_dim)
            key("Escape")
            wait_until("the overlay's end", is_clear)


if __name__ == "__main__":
    main()
