# SPDX-License-Identifier: MIT
"""A capture from the status item's menu on GNOME, where the shell draws the menu and takes its time
to take it away."""

import unittest

from support import main
from support.comparing import (is_unchanged, settled_screenshot, wait_until_dimmed,
                               wait_until_unchanged)
from support.desktop import Box, Clipboard, Pointer
from support.gnome import ask, set_animations
from support.page import Page
from support.program import Program
from support.waiting import wait_until
from support.wayland_tests import TEXT


# The first entry of the one status item's menu: its title, whether it is lit, and its place.
FIRST_ENTRY = """(() => {
    const area = Main.panel.statusArea;
    const name = Object.keys(area).find(each => each.startsWith("appindicator-"));
    const entry = area[name].menu.isOpen ? area[name].menu._getMenuItems()[0] : null;
    return entry ? [entry.label.text, entry.active, ...entry.get_transformed_position(),
                    ...entry.get_transformed_size()] : null;
})()"""


def first_entry():
    """Where the menu's first entry is, once it stands still."""
    told = ask(FIRST_ENTRY)
    if not told or None in told or told != ask(FIRST_ENTRY):
        return None
    title, _, *sides = told
    assert title == "Capture Text", title
    return Box(*(round(side) for side in sides))


def is_lit():
    """Whether the shell has noticed that the pointer is on the first entry: it gives a click that
    comes sooner to what was there before."""
    return ask(FIRST_ENTRY)[1]


class GnomeMenuTest(unittest.TestCase):
    def assert_captures_without_the_menu(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.status_item()
            before = settled_screenshot()
            program.click()
            entry = wait_until("the menu", first_entry)
            wait_until("the menu on the screen", lambda: not is_unchanged(before))
            Pointer.move(*entry.middle)
            wait_until("the lit entry", is_lit)
            Pointer.press()
            Pointer.release()
            # Of what was there before, and so without the menu.
            wait_until_dimmed(before)
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until_unchanged("the overlay's end", before)

    def test_menu_that_fades(self):
        set_animations(True)
        self.addCleanup(set_animations, False)
        self.assert_captures_without_the_menu()

    def test_menu_that_goes_at_once(self):
        self.assert_captures_without_the_menu()


if __name__ == "__main__":
    main()
