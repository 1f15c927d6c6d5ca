# SPDX-License-Identifier: MIT
"""The shortcut on other keyboard layouts, switched while the program runs.

In a desktop of its own: openbox was seen to place a window late that opens right after a switch.
"""

import unittest

from support import main
from support.desktop import tool
from support.page import Page
from support.pressing import assert_captures
from support.program import Program
from support.shortcut import O_KEY, wait_until_taken


class LayoutTest(unittest.TestCase):
    def test_the_key_stays_where_it_is(self):
        with Page("In front"), Program({"hotkeyEnabled": "true"}):
            wait_until_taken()
            for layout in ("de", "fr", "ru", "ara"):
                tool("setxkbmap", layout)
                # The key at the place of the ANSI keyboard's O, whatever it gives.
                assert_captures(f"super+shift+{O_KEY}")


if __name__ == "__main__":
    main()
