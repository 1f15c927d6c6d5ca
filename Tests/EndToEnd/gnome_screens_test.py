# SPDX-License-Identifier: MIT
"""Screens of different scale on GNOME that counts their places in points, as it does where it scales
by fractions. The portal gives one picture of them."""

import unittest

from support import main
from support.desktop import SCREENS, Clipboard, Pointer, place_page, points
from support.gnome import set_scales
from support.page import Page
from support.program import Program, is_unchanged, settled_screenshot
from support.waiting import wait_until
from support.wayland_tests import TEXT


class GnomeScreensTest(unittest.TestCase):
    def setUp(self):
        set_scales(1, 2, counts_points=True)
        self.addCleanup(set_scales, 1, 1)

    def test_dense_screen(self):
        # Windows begin on the pointer's screen.
        Pointer.rest()
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            there = page.box._replace(x=SCREENS[1].x + points(60), y=points(60))
            wait_until("the page in its place", lambda: place_page(None, there))
            Clipboard.put("before")
            settled_screenshot()
            # It begins once every pixel of both screens is as much darker as it should be.
            before = program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until("the overlay's end", lambda: is_unchanged(before))


if __name__ == "__main__":
    main()
