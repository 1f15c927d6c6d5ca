# SPDX-License-Identifier: MIT
"""Screens of different scale on GNOME, of which the portal gives one picture."""

import unittest

from support import main
from support.desktop import SCREENS, Clipboard, key, place_page
from support.gnome import set_scales
from support.page import Page
from support.program import Program, is_unchanged, settled_screenshot
from support.waiting import wait_until
from support.wayland_tests import TEXT



class GnomeScreensTest(unittest.TestCase):
    def setUp(self):
        set_scales(1, 2)
        self.addCleanup(set_scales, 1, 1)

    # A capture waits until every pixel of both screens is as much darker as it should be.

    def test_dense_screen_stands_on_its_part_of_the_picture(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            there = page.box._replace(x=SCREENS[0].right + page.box.x)
            wait_until("the page on the dense screen", lambda: place_page(None, there))
            settled_screenshot()
            before = program.start_capture()
            key("Escape")
            wait_until("the overlay's end", lambda: is_unchanged(before))

    def test_text_of_the_plain_screen(self):
        # The pointer of the tests stays there.
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)


if __name__ == "__main__":
    main()
