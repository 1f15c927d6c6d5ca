# SPDX-License-Identifier: MIT
"""The panel of Plasma's shell, as a new user gets it: below, with a system tray on the right that
grows to the left."""

import dbus
import numpy

from . import status_notifier
from .geometry import SCREENS, Box, difference, points
from .waiting import holds_for, wait_until

_HEIGHT = 44
# Parts of the panel with nothing between them: a tray icon's padding is less.
_GAP = 4
# Seconds in which the icon of a program that has ended is gone, on a busy machine too.
_LONGEST_FADING = 10
# The leftmost of the icons that the panel has without any program.
_own = []


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


def _leftmost(picture):
    icons = _icons(picture)
    return icons[0] if icons else None


def learn_tray(screenshot, copy):
    """What the tray has before the program starts, once that no longer changes. `copy` copies the
    first text, from which on the tray shows the clipboard's own icon."""
    def settled(is_expected):
        icon = _leftmost(screenshot())
        if not icon or not is_expected(icon):
            return None
        try:
            holds_for("at rest", lambda: _leftmost(screenshot()) == icon, 2)
        except AssertionError:
            return None
        return icon

    bus = dbus.SessionBus()
    wait_until("the shell's clipboard", lambda: bus.name_has_owner("org.kde.klipper"), 60)
    first = wait_until("the tray at rest", lambda: settled(lambda _: True), 60)
    copy()
    _learn(wait_until("the clipboard's icon in the tray",
                      lambda: settled(lambda icon: icon.right < first.x), 60))


def _learn(icon):
    _own[:] = [icon]


def _new_icons(picture):
    """Those left of what was there before the program."""
    return [icon for icon in _icons(picture) if icon.right < _own[0].x]


def has_tray_icon(screenshot):
    """Whether the tray has an icon of a program. What it shows while there is none, it has got itself
    late."""
    icons = _new_icons(screenshot())
    if not icons:
        return False
    try:
        holds_for("an icon of nobody", lambda: not status_notifier.items()
                  and _new_icons(screenshot()) == icons, _LONGEST_FADING)
    except AssertionError:
        return True
    _learn(icons[0])
    return False


def find_tray_icon(screenshot):
    """The program's icon, left of those that were there before it; None without one."""
    picture = screenshot()
    if difference(_part().of(picture), _part().of(screenshot())):
        return None
    icons = _new_icons(picture)
    return icons[0] if icons and icons[0].width <= points(24) else None
