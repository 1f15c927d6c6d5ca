# SPDX-License-Identifier: MIT
"""What a screen reader is told: the program's menus and windows as they are on the screen."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402 (the version must be chosen first)

from .desktop import Box  # noqa: E402

# For the program's environment: it tells screen readers only when there is one.
ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}


def _everything(node):
    if node is None:
        return
    yield node
    for index in range(node.get_child_count()):
        yield from _everything(node.get_child_at_index(index))


def _nodes(roles):
    found = []
    root = Atspi.get_desktop(0)
    for index in range(root.get_child_count()):
        application = root.get_child_at_index(index)
        if application is None or application.get_name().lower() != "vellora":
            continue
        application.clear_cache()
        for node in _everything(application):
            if node.get_role() in roles:
                found.append(node)
    return found


def menu_items():
    """The open menu's entries: [(title, place)], a separator having no title."""
    try:
        return [(node.get_name(), _box(node)) for node in
                _nodes({Atspi.Role.MENU_ITEM, Atspi.Role.SEPARATOR})
                if node.get_state_set().contains(Atspi.StateType.SHOWING)]
    except GLib.Error:
        return []  # it is gone while we look


def _box(node):
    place = node.get_extents(Atspi.CoordType.SCREEN)
    return Box(place.x, place.y, place.width, place.height)
