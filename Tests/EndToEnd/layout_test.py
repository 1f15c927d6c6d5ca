# SPDX-License-Identifier: MIT
"""The shortcut on other keyboard layouts, switched while the program runs.

In a desktop of its own: openbox was seen to place a window late that opens right after a switch.
"""

import unittest

from support import main
from support.desktop import key, tool
from support.page import Page
from support.program import Program, is_dimmed, is_unchanged, settled_screenshot
from support.shortcut import O_KEY, wait_until_taken
from support.waiting import wait_until


class LayoutTest(unittest.TestCase):
    def test_the_key_stays_where_it_is(self):
        with Page("In front"), Program({"hotkeyEnabled": "true"}):
            wait_until_taken()
            for layout in ("de", "fr", "ru", "ara"):
                tool("setxkbmap", layout)
                before = settled_screenshot()
                # The key at the place of the ANSI keyboard's O, whatever it gives.
                key(f"super+shift+{O_KEY}")
                wait_until("the dim on every screen", lambda before=before: is_dimmed(before))
                key("Escape")
                wait_until("the overlay's end", lambda before=before: is_unchanged(before))


if __name__ == "__main__":
    main()
