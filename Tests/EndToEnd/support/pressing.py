# SPDX-License-Identifier: MIT
"""What a press of the shortcut does, as a user sees it."""

from .desktop import key
from .program import is_dimmed, is_unchanged, settled_screenshot
from .waiting import holds_for, wait_until

# Qt's number of the key, as the page says it.
QT_O = 79

# The log's line when the combination cannot be had.
NOT_CREATED = ("GlobalHotkey: Failed to create event tap — "
               "Accessibility permission likely denied")


def assert_captures(shortcut):
    """A press dims every screen, and Escape ends that."""
    before = settled_screenshot()
    key(shortcut)
    wait_until("the dim on every screen", lambda: is_dimmed(before))
    key("Escape")
    wait_until("the overlay's end", lambda: is_unchanged(before))


def assert_reaches(page, shortcut):
    """A press, on the key O, goes to the window in front, and only there."""
    before, count = settled_screenshot(), len(page.said(f"key {QT_O}"))
    key(shortcut)
    wait_until("the key in the window", lambda: len(page.said(f"key {QT_O}")) > count)
    holds_for("without an overlay", lambda: is_unchanged(before), 0.3)
