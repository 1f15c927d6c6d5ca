# SPDX-License-Identifier: MIT
"""What a press of the shortcut does, as a user sees it."""

from .comparing import settled_screenshot, stays_unchanged, wait_until_dimmed, wait_until_unchanged
from .desktop import key
from .waiting import wait_until

# Qt's number of the key, as the page says it.
QT_O = 79

# The log's line when the combination cannot be had.
NOT_CREATED = ("GlobalHotkey: Failed to create event tap — "
               "Accessibility permission likely denied")


def assert_captures(shortcut):
    """A press dims every screen, and Escape ends that."""
    before = settled_screenshot()
    key(shortcut)
    wait_until_dimmed(before)
    key("Escape")
    wait_until_unchanged("the overlay's end", before)


def assert_reaches(page, shortcut):
    """A press, on the key O, goes to the window in front, and only there."""
    before, count = settled_screenshot(), len(page.said(f"key {QT_O}"))
    key(shortcut)
    wait_until("the key in the window", lambda: len(page.said(f"key {QT_O}")) > count)
    stays_unchanged("without an overlay", before, 0.3)
