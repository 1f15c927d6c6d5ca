# SPDX-License-Identifier: MIT
"""Screens of different scale on GNOME, of which the portal gives one picture."""

import unittest

from support import main
from support.comparing import settled_screenshot, wait_until_unchanged
from support.desktop import SCREENS, Clipboard, Pointer, place_page, points
from support.gnome import set_scales
from support.page import Page
from support.program import Program
from support.waiting import wait_until
from support.wayland_tests import TEXT

# QtWayland takes the compositor for late at each picture of a window, and does what it does on a busy
# machine.
BUSY = {"QT_WAYLAND_FRAME_CALLBACK_TIMEOUT": "1"}


class ScreensTests:
    """A capture begins once every pixel of both screens is as much darker as it should be."""

    COUNTS_POINTS = None

    def setUp(self):
        set_scales(1, 2, counts_points=self.COUNTS_POINTS)
        self.addCleanup(set_scales, 1, 1)

    def assert_captures(self, screen, environment=None):
        """The text of a page on that screen."""
        settings = {"outputMode": "clipboard"}
        # Windows begin on the pointer's screen.
        Pointer.rest()
        with Page(TEXT) as page, Program(settings, environment=environment) as program:
            there = page.box._replace(x=screen.x + points(60), y=points(60))
            wait_until("the page in its place", lambda: place_page(None, there))
            Clipboard.put("before")
            settled_screenshot()
            before = program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until_unchanged("the overlay's end", before)


class PixelsTest(ScreensTests, unittest.TestCase):
    """GNOME counts the places of screens in pixels, as it does by itself."""

    COUNTS_POINTS = False

    def test_dense_screen(self):
        self.assert_captures(SCREENS[1], BUSY)

    def test_plain_screen(self):
        self.assert_captures(SCREENS[0], BUSY)


class PointsTest(ScreensTests, unittest.TestCase):
    """GNOME counts them in points, as it does where it scales by fractions."""

    COUNTS_POINTS = True

    def test_dense_screen(self):
        self.assert_captures(SCREENS[1])


if __name__ == "__main__":
    main()
