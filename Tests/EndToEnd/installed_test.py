# SPDX-License-Identifier: MIT
"""The program as users have it: installed, started by the desktop from its entry, below the desktop's
own panel, and found by nothing but its place."""

import unittest
from pathlib import Path

from support import desktop, main
from support.comparing import (dimmed, settled_screenshot, stays_unchanged, wait_until_dimmed,
                               wait_until_unchanged)
from support.desktop import Clipboard, Pointer, key, screenshot
from support.installed import ENTRY, InstalledProgram, activate, launch, tell_bus
from support.page import Page
from support.program import activate_action, is_on_bus
from support.waiting import wait_until

TEXT = "As it is at home"
CLIPBOARD = {"outputMode": "clipboard"}


class InstalledTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        tell_bus()

    def assert_capture_began(self, before):
        wait_until_dimmed(before)
        Pointer.rest()
        key("Escape")
        wait_until_unchanged("the overlay's end", before)

    def test_a_start_from_the_menu_only_launches_and_a_click_captures(self):
        with Page(TEXT) as page:
            before = settled_screenshot()
            with InstalledProgram(CLIPBOARD, launch) as program:
                self.assertEqual(Path(f"/proc/{program.process_id}/exe").resolve(),
                                 (ENTRY.parents[2] / "bin/vellora").resolve())
                program.status_item()
                stays_unchanged("without an overlay", before, 1)
                Clipboard.put("before")
                program.capture(page.box)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until("the name's release", lambda: not is_on_bus())

    def test_chosen_again_it_captures(self):
        with Page(TEXT) as page, InstalledProgram(CLIPBOARD, activate) as program:
            program.status_item()
            before = settled_screenshot()
            launch()
            self.assert_capture_began(before)
            Clipboard.put("before")
            activate()
            wait_until_dimmed(before)
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    def test_an_action_of_the_entry_starts_it_and_captures(self):
        # The panel is not compared: it shows the item meanwhile, and what is beside it moves.
        place = desktop.beside_panel(0)
        # The shell takes an earlier test's page away when it gets to it.
        before = settled_screenshot()
        with InstalledProgram({}, lambda: activate_action("capture")):
            wait_until("the dim", lambda: (abs(place.of(screenshot()) - dimmed(place.of(before)))
                                           <= 2).all())
            key("Escape")
            wait_until_unchanged("the overlay's end", before)


if __name__ == "__main__":
    main()
