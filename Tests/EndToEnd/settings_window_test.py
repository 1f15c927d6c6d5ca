# SPDX-License-Identifier: MIT
"""The settings window on Wayland: where it opens, what is remembered, how it comes to the front."""

import itertools
import re
import unittest

from support import desktop, main
from support.artifacts import keep
from support.desktop import Pointer, points
from support.page import Page
from support.program import Program, activate_action, settings_file, wait_until_launched
from support.waiting import TimedOut, wait_until

if desktop.NAME == "sway":
    from support.sway import command
elif desktop.NAME == "gnome":
    from support.gnome import resize
else:
    from support.kwin import close, resize

TITLE = "Vellora Settings"
FRAME = r"settingsWindowFrame=(.*)"
BAR = 28  # points


def open_settings(token=None):
    activate_action("settings", token)
    window, = wait_until("the settings", lambda: desktop.windows_titled(TITLE))
    wait_until("the settings' focus", lambda: desktop.active_window() == int(window))
    return window


def wait_until_placed(window):
    """The program moves it when sway has told what it has made of it; the others place it before, but
    draw its title bar when they get to it."""
    if desktop.NAME != "sway":
        wait_until("the settings with their title bar",
                   lambda: desktop.frame_box(window).height > points(430))
        return
    screen = desktop.SCREENS[0]
    middle = screen.x + screen.width // 2, (screen.bottom - points(BAR)) // 2
    wait_until(f"the middle, {middle}", lambda: all(
        abs(is_at - should) <= 1
        for is_at, should in zip(desktop.frame_box(window).middle, middle)))


def close_settings():
    command(f'[title="^{TITLE}$"] kill')
    wait_until("the settings' end", lambda: not desktop.windows_titled(TITLE))


def drag_title_bar(window, right, down):
    """Moves the window by so many points; returns its frame from then on."""
    before = desktop.frame_box(window)
    start = before.x + points(100), before.y + points(12)
    Pointer.drag(start, (start[0] + points(right), start[1] + points(down)))
    Pointer.rest()
    moved = before._replace(x=before.x + points(right), y=before.y + points(down))
    wait_until(f"the settings at {moved}", lambda: desktop.frame_box(window) == moved)
    return moved


def resize_until_it_is_stored(window):
    """The program takes sizes for the user's once it has heard that it has the keyboard, which the
    compositor knows before."""
    widths = itertools.cycle((points(431), points(432)))

    def is_stored():
        resize(window, next(widths), points(500))
        try:
            # It gathers what it writes.
            return wait_until("a size in the file", stored_frame, 3)
        except TimedOut:
            return None

    wait_until("a size that is remembered", is_stored)


def stored_frame():
    """As it is in the file: (x, y, width, height), or None."""
    found = re.search(FRAME, settings_file().read_text())
    return tuple(float(number) for number in re.findall(r"-?[\d.]+", found[1])) if found else None


class SettingsWindowTest(unittest.TestCase):
    def test_covered_settings_come_to_the_front(self):
        # Asked without an activation token, and with text that is not one.
        for token in (None, "no-token", "no token at all"):
            with self.subTest(token=token), Program({}):
                wait_until_launched()
                window = open_settings()
                wait_until_placed(window)
                place = desktop.frame_box(window)
                with Page("covers", place):
                    page, = desktop.windows_titled("Text page")
                    desktop.activate(page)
                    wait_until("the page in front", lambda: desktop.active_window() == int(page))
                    self.assertEqual(open_settings(token), window)
                    if token is None:
                        keep("settings-in-front")
                    wait_until("the settings and the page alone", lambda: sorted(
                        desktop.listed_windows().values()) == ["Text page", TITLE])
                self.assertEqual(desktop.frame_box(window), place)

    @unittest.skipUnless(desktop.NAME == "sway", "sway tells all places")
    def test_opens_in_the_middle_of_what_the_bar_leaves(self):
        with Program({}):
            wait_until_launched()
            window = open_settings()
            content = desktop.window_box(window)
            self.assertEqual((content.width, content.height), (points(380), points(420)))
            wait_until_placed(window)

    @unittest.skipUnless(desktop.NAME == "sway", "sway tells all places")
    def test_place_is_remembered(self):
        with Program({}) as program:
            wait_until_launched()
            window = open_settings()
            wait_until_placed(window)
            command(f"[con_id={window}] move absolute position 100 px 60 px")
            command(f"[con_id={window}] resize set 500 px 450 px")
            moved = wait_until("the new size", lambda: desktop.window_box(window).width
                               > points(480) and desktop.frame_box(window))
            close_settings()
            again = open_settings()
            wait_until("the place of before", lambda: desktop.frame_box(again) == moved)
            program.quit()
        with Program(None):
            wait_until_launched()
            again = open_settings()
            wait_until("the place of before", lambda: desktop.frame_box(again) == moved)

    @unittest.skipUnless(desktop.NAME == "kwin_wayland", "KWin tells places to programs with an entry")
    def test_place_that_the_title_bar_was_dragged_to_is_remembered(self):
        with Program({}) as program:
            wait_until_launched()
            window = open_settings()
            wait_until_placed(window)
            resize_until_it_is_stored(window)
            resize(window, points(430), points(500))
            wait_until("the new size", lambda: desktop.frame_box(window)[2:] ==
                       (points(430), points(500)))
            moved = drag_title_bar(window, -97, -46)
            close(window)
            wait_until("the settings' end", lambda: not desktop.windows_titled(TITLE))
            again = open_settings()
            wait_until("the place of before", lambda: desktop.frame_box(again) == moved)
            # The program ends while they are open.
            moved = drag_title_bar(again, 61, 38)
            program.quit()
        with Program(None):
            wait_until_launched()
            again = open_settings()
            wait_until("the place of before", lambda: desktop.frame_box(again) == moved)

    @unittest.skipUnless(desktop.NAME == "gnome", "GNOME tells no places")
    def test_place_of_another_session_is_kept(self):
        with Program({"settingsWindowFrame": '"{{17, 31}, {400, 500}}"'}):
            wait_until_launched()
            window = open_settings()
            # Larger by its borders until the program knows of them.
            size = wait_until("the size of before", lambda: desktop.frame_box(window)[2:] ==
                              (points(400), points(500)) and desktop.frame_box(window))
            resize(window, size.width + 60, size.height + 40)
            wait_until("the new size in the file", lambda: stored_frame()[2:] > (440, 0))
            self.assertEqual(stored_frame()[:2], (17, 31))


if __name__ == "__main__":
    main()
