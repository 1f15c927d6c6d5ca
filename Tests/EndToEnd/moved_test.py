# SPDX-License-Identifier: MIT
"""The installation, moved to another place: nothing in the program knows where it was built or put."""

import os
import shutil
import tempfile
import unittest
from pathlib import Path

from support import main, status_notifier
from support.comparing import wait_until_unchanged
from support.desktop import Clipboard
from support.page import Page
from support.program import Program
from support.waiting import wait_until

TEXT = "Moved away"
INSTALLED = Path(os.environ["VELLORA_INSTALLED"])


class MovedTest(unittest.TestCase):
    def test_capture(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder).resolve() / "moved"
            shutil.copytree(INSTALLED, tree, symlinks=True)
            # Nothing but its own place tells it where its files are.
            environment = {"XDG_DATA_DIRS": "/usr/local/share:/usr/share"}
            with Page(TEXT) as page, \
                    Program({"outputMode": "clipboard"}, environment,
                            command=[str(tree / "bin/vellora")]) as program:
                before = program.capture(page.box)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
                wait_until_unchanged("the overlay's end", before)
                self.assertEqual(status_notifier.read("IconThemePath"), str(tree / "share/icons"))


if __name__ == "__main__":
    main()
