# SPDX-License-Identifier: MIT
"""An update puts another file in the place of the program that runs."""

import os
import shutil
import unittest

from support import desktop, main
from support.built_entry import copied_program, with_entry
from support.comparing import stays_unchanged
from support.desktop import Clipboard
from support.page import Page
from support.program import Program, binary, is_on_bus
from support.waiting import wait_until

TEXT = "Old and new"
CLIPBOARD = {"outputMode": "clipboard"}


class ReplacedTest(unittest.TestCase):
    def setUp(self):
        self.program = copied_program()
        if desktop.NAME == "kwin_wayland":
            self.enterContext(with_entry(self.program))

    def replace(self):
        """As package managers do: beside it, and then in its place."""
        new = shutil.copy2(binary(), f"{self.program}.new")
        os.replace(new, self.program)

    def runs_from_its_file(self, process):
        return os.readlink(f"/proc/{process}/exe") == str(self.program)

    def test_the_running_one_becomes_the_new_one(self):
        with Page(TEXT) as page, Program(CLIPBOARD, command=[str(self.program)]) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            process = program.process.pid
            # From here on, the file that runs is gone.
            self.replace()
            wait_until("the new program", lambda: self.runs_from_its_file(process))
            wait_until("the new program on the session bus", is_on_bus)
            # What was captured before can be pasted still.
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            stays_unchanged("without an overlay", before, 1)
            program.find_status_item_again()
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)


if __name__ == "__main__":
    main()
