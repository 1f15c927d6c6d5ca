# SPDX-License-Identifier: MIT
"""Screens of different scale on GNOME, of which the portal gives one picture."""

import unittest

from support import desktop, main
from support.desktop import SCREENS, Clipboard, Pointer, place_page, points, screenshot
from support.gnome import set_scales
from support.page import Page
from support.program import (Program, activate_action, dimmed, is_dimmed, is_unchanged,
                             settled_screenshot)
from support.waiting import wait_until
from support.wayland_tests import TEXT

# The program takes the compositor for late at each picture of a window, which makes it do what it
# does on a busy machine.
BUSY = {"QT_WAYLAND_FRAME_CALLBACK_TIMEOUT": "1"}


def is_dim_but_for(page, before):
    """Whether both screens are, but for the page's place: where the shell counts points, a plain
    screen's letters and edges are softer in pictures."""
    now, dark = screenshot(), dimmed(before)
    page = page.inset(-2)
    page.of(now)[...] = page.of(dark)[...] = 0
    return all((abs(area.of(now) - area.of(dark)) <= 2).all()
               for area in (desktop.beside_panel(0), SCREENS[1]))


class ScreensTests:
    COUNTS_POINTS = None

    def setUp(self):
        set_scales(1, 2, counts_points=self.COUNTS_POINTS)
        self.addCleanup(set_scales, 1, 1)

    def assert_captures(self, screen, environment=None):
        """The text of a page on that screen, with both screens dim meanwhile."""
        settings = {"outputMode": "clipboard"}
        # Windows begin on the pointer's screen, and are halved or doubled from there.
        Pointer.rest()
        with Page(TEXT) as page, Program(settings, environment=environment) as program:
            there = page.box._replace(x=screen.x + points(60), y=points(60))
            wait_until("the page in its place", lambda: place_page(None, there))
            Clipboard.put("before")
            program.status_item()
            before = settled_screenshot()
            activate_action("capture")
            wait_until("the dim", lambda: is_dim_but_for(page.box, before))
            if screen == SCREENS[1]:
                self.assertTrue(is_dimmed(before))
            Pointer.drag(page.box[:2], (page.box.right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until("the overlay's end", lambda: is_unchanged(before))

    def test_dense_screen(self):
        self.assert_captures(SCREENS[1])

    def test_plain_screen(self):
        self.assert_captures(SCREENS[0])


class PixelsTest(ScreensTests, unittest.TestCase):
    """The shell counts the places of screens in pixels, as it does by itself."""

    COUNTS_POINTS = False

    def test_dense_screen_when_busy(self):
        self.assert_captures(SCREENS[1], BUSY)


class PointsTest(ScreensTests, unittest.TestCase):
    """The shell counts them in points, as it does where it scales by fractions."""

    COUNTS_POINTS = True


if __name__ == "__main__":
    main()
