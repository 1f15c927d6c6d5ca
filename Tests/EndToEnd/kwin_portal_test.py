# SPDX-License-Identifier: MIT
"""Plasma's portal takes the pictures where KWin refuses them, as it does a program that no desktop
entry names: the real xdg-desktop-portal with KDE's part of it."""

import re
import unittest
from pathlib import Path

from support import accessibility, main, status_notifier
from support.accessibility import control
from support.artifacts import keep
from support.built_entry import copied_program
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer
from support.page import Page
from support.program import Program, activate_action, wait_until_launched
from support.waiting import wait_until

TEXT = "By way of a portal"
# Here KDE's part of the portal lays its pictures, and without it gives none.
PICTURES = Path.home() / "Pictures"
WINDOW = "Vellora"
NOT_GRANTED = "Screen Recording permission not granted — left-click to try again"
REFUSED = ("Vellora: Screen Recording permission not granted: KWin .* {}[.] Install Vellora, .* "
           "The desktop’s portal was asked, and gave no picture[.]")


class KWinPortalTest(unittest.TestCase):
    def setUp(self):
        self.copy = copied_program()

    def program(self):
        return Program({"outputMode": "clipboard"}, accessibility.ENVIRONMENT,
                       command=[str(self.copy)])

    @staticmethod
    def tool_tip(begin):
        """Its text, if it begins so."""
        text = status_notifier.tool_tip_text()
        return text if text.startswith(begin) else None

    def test_captures(self):
        PICTURES.mkdir()
        self.addCleanup(PICTURES.rmdir)
        with Page(TEXT) as page, self.program():
            wait_until_launched()
            for text in ("before", "before the second"):
                Clipboard.put(text)
                before = settled_screenshot()
                activate_action("capture")
                wait_until_dimmed(before)
                Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
                wait_until_unchanged("what was there before", before)
        # The portal's pictures are nobody's any more.
        self.assertEqual(list(PICTURES.iterdir()), [])

    def test_without_a_picture_the_mark_comes_at_once(self):
        with Page(TEXT), self.program() as program:
            wait_until_launched()
            before = settled_screenshot()
            activate_action("capture")
            program.logged(REFUSED.format(re.escape(str(self.copy))))
            tip = wait_until("the mark", lambda: self.tool_tip(NOT_GRANTED))
            self.assertIn(str(self.copy), tip)
            keep("kwin-portal-without-picture")
            control(WINDOW, "push button", "Not Now").do("Press")
            wait_until_unchanged("what was there before", before)


if __name__ == "__main__":
    main()
