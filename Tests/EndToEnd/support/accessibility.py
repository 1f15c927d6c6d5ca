# SPDX-License-Identifier: MIT
"""The program's windows as a screen reader meets them, over AT-SPI."""

import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from .desktop import Box  # noqa: E402
from .waiting import PATIENCE, wait_until  # noqa: E402

# In milliseconds, for each question and for a program's start. A busy program was seen not to answer
# within the usual 0.8 s.
Atspi.set_timeout(PATIENCE * 1000, 60_000)

# For the program: it offers itself only where somebody listens.
ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}


def _children(accessible):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None:
            yield child


def _tree(accessible):
    yield accessible
    for child in _children(accessible):
        yield from _tree(child)


class Control:
    """One accessible object, asked anew each time."""

    def __init__(self, accessible):
        accessible.clear_cache()
        self.accessible = accessible
        self.name = accessible.get_name()
        self.role = accessible.get_role_name()
        self.description = accessible.get_description()

    def is_(self, state):
        return self.accessible.get_state_set().contains(getattr(Atspi.StateType, state.upper()))

    @property
    def is_focusable(self):
        return self.is_("focusable")

    @property
    def is_showing(self):
        return self.is_("showing")

    @property
    def text(self):
        return Atspi.Text.get_text(self.accessible, 0,
                                   Atspi.Text.get_character_count(self.accessible))

    @property
    def box(self):
        """Where it is, in pixels of the desktop."""
        extents = Atspi.Component.get_extents(self.accessible, Atspi.CoordType.SCREEN)
        return Box(extents.x, extents.y, extents.width, extents.height)

    def do(self, action):
        """Does what the control offers under this name, such as "Toggle"."""
        count = Atspi.Action.get_n_actions(self.accessible)
        with warnings.catch_warnings():
            # The bindings call the names deprecated, but know no other way to tell actions apart.
            warnings.simplefilter("ignore", DeprecationWarning)
            names = [Atspi.Action.get_action_name(self.accessible, index)
                     for index in range(count)]
        assert action in names, f"{self.name} offers {names}"
        assert Atspi.Action.do_action(self.accessible, names.index(action))

    def __repr__(self):
        return f"{self.role} {self.name!r}"


def window(title):
    """The window of any program with this title, once it can be seen."""
    def find():
        for application in _children(Atspi.get_desktop(0)):
            for frame in _children(application):
                if frame.get_name() == title:
                    control = Control(frame)
                    return control if control.is_showing else None
        return None

    return wait_until(f"an accessible window {title!r}", lambda: _careful(find))


def controls(title):
    """All that is in the window of this title, in its order."""
    root = window(title)
    return wait_until("the window's content", lambda: _careful(
        lambda: [Control(each) for each in _tree(root.accessible)]))


def control(title, role, name):
    """The one control of the window with this role and name, once it is there."""
    def find():
        found = [each for each in controls(title) if (each.role, each.name) == (role, name)]
        return found[0] if len(found) == 1 else None

    return wait_until(f"the {role} {name!r}", find)


def has_control(title, role, name):
    return any((each.role, each.name) == (role, name) for each in controls(title))


def _careful(find):
    """What `find` finds; None when something went away while it looked."""
    try:
        return find()
    except GLib.Error:
        return None
