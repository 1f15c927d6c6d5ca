# SPDX-License-Identifier: MIT
"""A hundred captures in a row: no pixel and no byte is left behind."""

import unittest

from support import main
from support.comparing import wait_until_unchanged
from support.desktop import Clipboard
from support.page import Page
from support.program import Program
from support.waiting import wait_until

TEXT = "Again and again"
QUIET = {"outputMode": "clipboard", "showNotification": "false"}


class EnduranceTest(unittest.TestCase):
    def test_a_hundred_captures(self):
        with Page(TEXT) as page, Program(QUIET) as program:
            before = None
            for _ in range(100):
                Clipboard.put("before")
                before = program.capture(page.box, before)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
                wait_until_unchanged("the overlay's end", before)


if __name__ == "__main__":
    main()
