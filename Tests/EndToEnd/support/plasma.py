# SPDX-License-Identifier: MIT
"""The panel of Plasma's shell, as a new user gets it: below, with a system tray on the right that
grows to the left."""

import numpy

from .geometry import SCREENS, Box, difference, points
from .waiting import holds_for, wait_until

_HEIGHT = 44
# Parts of the panel with nothing between them: a tray icon's padding is less.
_GAP = 4
_tray = []


def _part():
    """The right half of the panel, where the tray is; less the line above it."""
    screen = SCREENS[0]
    height = points(_HEIGHT - 4)
    return Box(screen.x + screen.width // 2, screen.bottom - height, screen.width // 2, height)


def _icons(picture):
    """Where there are icons and texts in that part, from the left."""
    part = _part()
    shown = part.of(picture)
    # The panel's own colour is where the task bar is empty.
    inked = (abs(shown - shown[1, 1]).max(axis=2) > 60)
    columns = numpy.flatnonzero(inked.any(axis=0))
    if len(columns) == 0:
        return []
    found = []
    for run in numpy.split(columns, numpy.flatnonzero(numpy.diff(columns) > points(_GAP)) + 1):
        rows = numpy.flatnonzero(inked[:, run[0]:run[-1] + 1].any(axis=1))
        found.append(Box(part.x + int(run[0]), part.y + int(rows[0]), int(run[-1] - run[0] + 1),
                         int(rows[-1] - rows[0] + 1)))
    return found


def learn_tray(screenshot, copy):
    """What the tray has before the program starts, once that no longer changes. `copy` copies the
    first text, from which on the tray shows the clipboard's own icon."""
    def settled(more_than):
        icons = _icons(screenshot())
        if len(icons) <= more_than:
            return None
        try:
            holds_for("at rest", lambda: _icons(screenshot()) == icons, 2)
        except AssertionError:
            return None
        return icons

    without = wait_until("the tray at rest", lambda: settled(0), 60)
    copy()
    _tray[:] = wait_until("the clipboard's icon in the tray", lambda: settled(len(without)), 60)


def find_tray_icon(screenshot):
    """The program's icon, left of those that were there before it; None without one."""
    picture = screenshot()
    if difference(_part().of(picture), _part().of(screenshot())):
        return None
    icons = _icons(picture)
    is_new = icons and icons[0].right < _tray[0].x and icons[0].width <= points(24)
    return icons[0] if is_new else None
