# SPDX-License-Identifier: MIT
"""The status item: its menu, its marks, and that it is all there is of an idle program."""

import unittest

from support import desktop, main, status_notifier
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer, key, points, screenshot
from support.marks import shows_copied, shows_error, tint
from support.page import Page
from support.program import Program
from support.waiting import holds_for, wait_until

TEXT = "Read me aloud"
CLIPBOARD = {"outputMode": "clipboard"}
TOOL_TIP = "Left-click to capture text · Right-click for menu"
SPEAKS_SNI = desktop.PANEL.startswith(("xfce4", "waybar"))
# A bar of sway's never gets the keyboard; sway_test chooses with the pointer.
needs_keys = unittest.skipIf(desktop.NAME == "sway", "the panel gets no keys")


class StatusItemTest(unittest.TestCase):
    def open_menu(self, program):
        """A right click; returns what the screens showed before."""
        program.status_item()
        before = settled_screenshot()
        program.click(button=3)
        place = desktop.beside_panel(0)

        def shows_menu():
            # Higher than a tool tip.
            change = desktop.difference(place.of(before), place.of(screenshot()))
            return change and change.height > points(70)

        wait_until("the menu", shows_menu)
        Pointer.rest()
        return before

    @needs_keys
    def test_menu_opens_again_and_again(self):
        with Program({}) as program:
            for _ in range(5):
                before = self.open_menu(program)
                key("Escape")
                wait_until_unchanged("the menu's end", before)

    @unittest.skipUnless(SPEAKS_SNI, "no other program reads the menu")
    def test_menu_entries(self):
        with Program({}) as program:
            program.status_item()
            self.assertEqual(status_notifier.menu_titles(),
                             ["Capture Text", "", "Settings…", "Check for Updates…", "",
                              "Quit Vellora"])

    @needs_keys
    def test_capture_from_the_menu(self):
        with Program({}) as program:
            before = self.open_menu(program)
            key("Down")
            key("Return")
            wait_until_dimmed(before)
            key("Escape")
            wait_until_unchanged("the overlay's end", before)

    @needs_keys
    def test_quit_from_the_menu(self):
        with Program({}) as program:
            self.open_menu(program)
            key("Up")
            key("Return")
            self.assertEqual(program.wait_for_end(), 0)

    def look(self, program):
        """The status item's picture, its colours alone: the pointer over it may light it up."""
        return program.status_item().inset(-points(2)).of(screenshot())

    def rest(self, program):
        """Moves the pointer away, so that the panel does not light the item up; returns the look."""
        Pointer.rest()
        return wait_until("the panel at rest", lambda: self.steady(program))[0]

    def steady(self, program):
        look = self.look(program)
        try:
            holds_for("at rest", lambda: (self.look(program) == look).all(), 0.3)
        except AssertionError:
            return None
        return [look]

    def test_copied_mark(self):
        with Page(TEXT) as page, Program(CLIPBOARD) as program:
            program.status_item()
            normal = self.rest(program)
            self.assertFalse(shows_copied(normal) or shows_error(normal))
            before = program.capture(page.box)

            def is_marked():
                # In the panel's colour, as the normal icon is.
                look = self.look(program)
                return shows_copied(look) and abs(tint(look) - tint(normal)).max() < 30

            # Before all else, as it stays for no more than 1.5 seconds.
            wait_until("the copied mark", is_marked)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until("the normal icon", lambda: (self.look(program) == normal).all())
            wait_until_unchanged("what was there before", before)

    def test_no_copied_mark_when_it_is_off(self):
        with Page(TEXT) as page, Program({**CLIPBOARD, "showNotification": "false"}) as program:
            Clipboard.put("before")
            program.status_item()
            normal = self.rest(program)
            before = program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until_unchanged("the overlay's end", before)
            wait_until("the normal icon", lambda: (self.look(program) == normal).all())
            holds_for("the normal icon", lambda: (self.look(program) == normal).all(), 1)

    def test_nothing_found(self):
        with Program({"outputMode": "both"}) as program:
            Clipboard.put("before")
            program.status_item()
            normal = self.rest(program)
            self.assert_tool_tip(TOOL_TIP)
            empty = desktop.Box(points(100), points(100), points(200), points(100))
            before = program.capture(empty)
            told = set()

            def is_told():
                # Together, as both stay for no more than two seconds.
                if shows_error(self.look(program)):
                    told.add("mark")
                if not SPEAKS_SNI or status_notifier.tool_tip_text() == "No text found":
                    told.add("tool tip")
                return told == {"mark", "tool tip"}

            wait_until("the error mark and its tool tip", is_told)
            program.logged("Vellora OCR: No text found")
            wait_until("the normal icon", lambda: (self.look(program) == normal).all())
            self.assert_tool_tip(TOOL_TIP)
            self.assertEqual(Clipboard.text(), "before")
            wait_until_unchanged("what was there before", before)

    def assert_tool_tip(self, text):
        if SPEAKS_SNI:
            wait_until(f"the tool tip {text!r}", lambda: status_notifier.tool_tip_text() == text)

    @unittest.skipIf(desktop.NAME == "sway", "sway lists every window")
    def test_nothing_in_the_task_bar(self):
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            def others():
                return [text for text in desktop.listed_windows().values()
                        if "Text page" not in text]
            program.status_item()
            self.assertEqual(others(), [])
            program.start_capture()
            self.assertEqual(others(), [])
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            program.popup()
            holds_for("without an entry in the task bar", lambda: not others(), 0.3)


if __name__ == "__main__":
    main()
