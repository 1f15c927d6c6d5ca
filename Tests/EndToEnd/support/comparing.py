# SPDX-License-Identifier: MIT
"""What the screens show, compared with what they showed before: all of them, less the panel's place
on the first, where the pointer's passing alone changes something."""

import os
import subprocess

import support

from . import desktop
from .artifacts import keep
from .desktop import Box, screenshot
from .waiting import TimedOut, holds_for, wait_until

# By how much a colour below the overlay may be another than the one that is worked out here.
_ROUNDING = 2


def dimmed(picture):
    """What a picture looks like below black of an opacity of a quarter."""
    return picture * 0.75


def _compared(now, before):
    """The same parts of both pictures."""
    for number in range(len(desktop.SCREENS)):
        area = desktop.beside_panel(number)
        yield area.of(now), area.of(before)


def is_dimmed(before, now=None, tolerance=_ROUNDING):
    """Whether every screen is, with the panel, of which one place is looked at."""
    now = screenshot() if now is None else now
    middle = desktop.SCREENS[0].width // 2
    panel = Box(middle, desktop.SCREENS[0].height - desktop.points(10), 4, 4)
    areas = [*_compared(now, before), (panel.of(now), panel.of(before))]
    return all((abs(screen - dimmed(was)) <= tolerance).all() for screen, was in areas)


def is_unchanged(before, now=None):
    now = screenshot() if now is None else now
    return all((screen == was).all() for screen, was in _compared(now, before))


def wait_until_dimmed(before, what="the dim on every screen"):
    """A failure says where the screens are not, and keeps both pictures."""
    looks = _Looks(before, is_dimmed)
    try:
        wait_until(what, looks.are_right)
    except TimedOut as problem:
        raise TimedOut(f"{problem}; {looks.told(dimmed(before), _ROUNDING)}") from problem


def wait_until_unchanged(what, before):
    """Until the screens show what they did before. A failure says where they do not, and keeps both
    pictures."""
    looks = _Looks(before, is_unchanged)
    try:
        wait_until(what, looks.are_right)
    except TimedOut as problem:
        raise TimedOut(f"{problem}; {looks.told(before)}") from problem


def stays_unchanged(what, before, seconds):
    """For what must not happen: the screens have to show what they did before all the time."""
    looks = _Looks(before, is_unchanged)
    try:
        holds_for(what, looks.are_right, seconds)
    except AssertionError as problem:
        raise AssertionError(f"{problem}; {looks.told(before)}") from problem


def settled_screenshot(rest=0.3):
    """What the screens show, once that has not changed for so many seconds (a repaint is done within
    a few milliseconds) and nothing of it goes by itself."""
    def settled():
        if desktop.popups():
            return None
        picture = screenshot()
        try:
            holds_for("at rest", lambda: is_unchanged(picture), rest)
        except AssertionError:
            return None
        return None if desktop.popups() else (picture,)

    return wait_until("the screens at rest", settled)[0]


class _Looks:
    """Looks at the screens, of which the last is remembered."""

    def __init__(self, before, condition):
        self._before, self._condition = before, condition
        self._now = before

    def are_right(self):
        self._now = screenshot()
        return self._condition(self._before, self._now)

    def told(self, expected, tolerance=0):
        """Where the last one is not as expected, what can be read there, and where the pictures
        of before and of then are kept."""
        name = f"{support.current_test}@{desktop.NAME}-{os.getpid()}"
        files = [keep(f"{name}-{when}", picture)
                 for when, picture in (("before", self._before), ("last", self._now))]
        found = []
        for number in range(len(desktop.SCREENS)):
            area = desktop.beside_panel(number)
            box = desktop.difference(area.of(self._now), area.of(expected), tolerance)
            if box:
                place = box._replace(x=area.x + box.x, y=area.y + box.y)
                was, reads = (_texts(place, each, name) for each in (self._before, self._now))
                found.append(f"in {place}, where {was!r} was to be read and is {reads!r}")
        return (f"the screens differ {' and '.join(found) or 'in the panel'}; the windows: "
                f"{list(desktop.listed_windows().values())}; pictures: {files[0]} {files[1]}")


def _texts(place, picture, name):
    """What the recognizer reads there."""
    file = keep(f"{name}-read", place.of(picture))
    try:
        return subprocess.run([os.environ["VELLORA_READ"], str(file)], capture_output=True,
                              text=True, timeout=60, check=False).stdout
    except subprocess.TimeoutExpired:
        return "?"
