# SPDX-License-Identifier: MIT
"""The window for updates as a screen reader meets it, and as a hand uses it."""

from . import desktop
from .accessibility import control, controls
from .desktop import Pointer
from .program import activate_action, is_on_bus
from .waiting import wait_until

TITLE = "Vellora Update"
BUTTON, LABEL = "push button", "label"


def check_for_updates():
    wait_until("the program on the session bus", is_on_bus)
    activate_action("check-for-updates")
    window, = wait_until("the window", lambda: desktop.windows_titled(TITLE))
    wait_until("the window in front", lambda: desktop.active_window() == int(window))


def says(text, seconds=60):
    """Waits until the window shows this text as one of its lines."""
    wait_until(f"{text!r} in the window", lambda: is_shown(LABEL, text), seconds)


def is_shown(role, name):
    return bool(desktop.windows_titled(TITLE)) and any(
        each.is_showing for each in controls(TITLE) if (each.role, each.name) == (role, name))


def showing(role):
    return [each.name for each in controls(TITLE) if each.role == role and each.is_showing]


def click(name):
    Pointer.click(*control(TITLE, BUTTON, name).box.middle)


def has_focus(name):
    wait_until(f"the focus of {name!r}", lambda: control(TITLE, BUTTON, name).is_("focused"))
