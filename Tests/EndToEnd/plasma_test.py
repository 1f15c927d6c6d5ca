# SPDX-License-Identifier: MIT
"""The status item in Plasma's own panel."""

import re
import unittest

import dbus
import numpy

from support import desktop, main, status_notifier
from support.built_entry import copied_program
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer, points, screenshot
from support.kwin import minimise
from support.page import Page
from support.program import Program
from support.waiting import holds_for, wait_until

SETTINGS = "Vellora Settings"
TEXT = "The quick brown fox\njumps over 13 lazy dogs"
NOT_GRANTED = "Screen Recording permission not granted — left-click to try again"
REFUSED = "Vellora: Screen Recording permission not granted: KWin .* {}[.] Install Vellora, .*"


class PlasmaTest(unittest.TestCase):
    def look(self, box):
        return box.of(screenshot())

    @staticmethod
    def is_other_picture(one, other):
        """Whether a tenth of it at least is another; Plasma does not draw the same one alike."""
        changed = (abs(one - other).max(axis=2) > 60).sum()
        return changed * 10 > one.shape[0] * one.shape[1]

    def settled_look(self, box):
        """Once the panel has faded it in."""
        def settled():
            look = self.look(box)
            try:
                holds_for("at rest", lambda: (self.look(box) == look).all(), 1)
            except AssertionError:
                return None
            return (look,)

        return wait_until("the icon at rest", settled)[0]

    def test_a_click_captures(self):
        with Program({}) as program:
            program.status_item()
            before = settled_screenshot()
            program.click()
            wait_until_dimmed(before)
            Pointer.rest()
            desktop.key("Escape")
            wait_until_unchanged("the overlay's end", before)

    def test_mark_of_a_missing_permission(self):
        copy = copied_program()
        with Program({}, command=[str(copy)]) as program:
            item = program.status_item()
            normal = self.settled_look(item)
            before = settled_screenshot()
            program.click()
            Pointer.rest()
            program.logged(REFUSED.format(re.escape(str(copy))))
            # The panel shows it when it gets to it.
            wait_until("the mark's text",
                       lambda: status_notifier.tool_tip_text().startswith(NOT_GRANTED))
            wait_until("the mark", lambda: self.is_other_picture(self.look(item), normal))
            wait_until("the mark's end",
                       lambda: not self.is_other_picture(self.look(item), normal))
            wait_until_unchanged("what was there before", before)

    def choose_settings(self, program):
        """In the menu that the panel draws on a right click; its third entry."""
        # A tool tip keeps the menu from opening.
        before = settled_screenshot()
        program.click(button=3)
        found = []

        def is_steady():
            found.append(desktop.difference(before, screenshot()))
            return found[-1] and found[-1].height > points(100) and found[-2:] == [found[-1]] * 2

        wait_until("the menu", is_steady)
        for _ in range(2):
            desktop.key("Down")
        desktop.key("Return")
        # On the icon it would bring the tool tip. The panel must notice that it goes: below a menu it
        # does not, and shows the tool tip of the next icon there.
        wait_until("the menu's end", lambda: not desktop.popups())
        Pointer.rest()

    def test_result_window_stands_above_the_panel(self):
        screen = desktop.SCREENS[0]
        with Page(TEXT, Page.corner_box(above=60)) as page, Program({"outputMode": "popup"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            popup = program.popup()
            wait_until("the result window in the corner",
                       lambda: desktop.frame_box(popup).right == screen.right)
            self.assertLessEqual(desktop.frame_box(popup).bottom, screen.bottom - points(44))
            content = desktop.window_box(popup)
            Pointer.click(content.right - points(55), content.bottom - points(22))
            wait_until("the copied text", lambda: Clipboard.text() == TEXT)

    @staticmethod
    def lines_of(page):
        """Where the page's lines stand, from the top."""
        inked = numpy.flatnonzero((page.of(screenshot()) < 128).any(axis=(1, 2)))
        runs = numpy.split(inked, numpy.flatnonzero(numpy.diff(inked) > 4) + 1)
        return [page._replace(y=page.y + int(run[0]) - 4, height=len(run) + 8) for run in runs]

    def test_clipboard_history_has_every_copy(self):
        words = ["apple", "bread", "chair", "dance", "eagle", "fruit", "grape", "house", "island",
                 "juice"]
        history = dbus.Interface(dbus.SessionBus().get_object("org.kde.klipper", "/klipper"),
                                 "org.kde.klipper.klipper")
        place = Page.usual_box()._replace(height=points(500))
        with Page("\n".join(words), place) as page, Program({"outputMode": "clipboard"}) as program:
            lines = self.lines_of(page.box)
            self.assertEqual(len(lines), len(words))
            for line, word in zip(lines, words):
                program.capture(line)
                wait_until(f"the copied {word}", lambda: Clipboard.text() == word)
            wait_until("ten copies, the last first", lambda: (
                [str(copy) for copy in history.getClipboardHistoryMenu()][:len(words)] ==
                words[::-1]))

    def test_covered_settings_come_to_the_front(self):
        with Program({}) as program:
            program.status_item()
            self.choose_settings(program)
            window, = wait_until("the settings", lambda: desktop.windows_titled(SETTINGS))
            wait_until("the settings' focus", lambda: desktop.active_window() == window)
            place = desktop.frame_box(window)
            with Page(TEXT, place):
                page, = desktop.windows_titled("Text page")
                desktop.activate(page)
                wait_until("the page in front", lambda: desktop.active_window() == page)
                self.choose_settings(program)
                wait_until("the settings' focus", lambda: desktop.active_window() == window)
            self.assertEqual(desktop.frame_box(window), place)

    def test_minimised_settings_come_to_the_front(self):
        with Program({}) as program:
            program.status_item()
            self.choose_settings(program)
            window, = wait_until("the settings", lambda: desktop.windows_titled(SETTINGS))
            wait_until("the settings' focus", lambda: desktop.active_window() == window)
            # An ordinary window, which the task bar shows.
            self.assertIn(SETTINGS, desktop.listed_windows().values())
            place = desktop.frame_box(window)
            minimise(window)
            wait_until("the settings out of sight", lambda: not desktop.windows_titled(SETTINGS))
            self.choose_settings(program)
            wait_until("the settings again", lambda: desktop.windows_titled(SETTINGS))
            wait_until("the settings' focus", lambda: desktop.active_window() == window)
            self.assertEqual(desktop.frame_box(window), place)


if __name__ == "__main__":
    main()
