# SPDX-License-Identifier: MIT
"""GNOME's dialogs that ask its user, and their buttons."""

from pathlib import Path

from .geometry import Box
from .gnome import Device, ask, in_pixels, windows
from .waiting import wait_until

# The buttons of the shell's own dialog, by what stands on them.
_FIND_BUTTON = """(() => {{
    const all = actor => [actor, ...actor.get_children().flatMap(all)];
    return all(Main.layoutManager.modalDialogGroup).find(
        actor => actor.mapped && actor.label === "{name}" && actor.get_transformed_size()[0]);
}})()"""
_BUTTON = """(() => {{
    const button = {button};
    return button ? [...button.get_transformed_position(), ...button.get_transformed_size()] : null;
}})()"""
_TELL_END = """(() => {{
    const button = {button};
    global.velloraHasEnded = false;
    if (button)
        button.connect("destroy", () => {{ global.velloraHasEnded = true; }});
    return 0;
}})()"""


# From GNOME 48 on dialogs are windows of these programs. Where their buttons are, in points.
_WINDOW_BUTTONS = {
    "Deny": ("xdg-desktop-portal-gnome",
             lambda frame: Box(frame.x + 24, frame.bottom - 68, frame.width // 2 - 30, 44)),
    "Allow": ("xdg-desktop-portal-gnome",
              lambda frame: Box(frame.middle[0] + 6, frame.bottom - 68, frame.width // 2 - 30, 44)),
    "Add": ("org.gnome.Settings.GlobalShortcutsProvider",
            lambda frame: Box(frame.right - 69, frame.y + 6, 63, 34)),
}


def _window_button(name):
    owner, place = _WINDOW_BUTTONS[name]
    # Drawn once it has the keyboard; of no size before.
    frames = [Box(*each["frame"]) for each in windows() if each["owner"] == owner and each["active"]]
    return in_pixels(place(frames[0])) if frames and frames[0].width else None


def dialog_button(name):
    """Where the button is, while the desktop's dialog is there."""
    sides = ask(_BUTTON.format(button=_FIND_BUTTON.format(name=name)))
    if sides and None not in sides:
        return in_pixels(sides)
    return _window_button(name)


def answer(name):
    """A click on the dialog's button, once it stands still."""
    def is_steady():
        box = dialog_button(name)
        return box if box and box == dialog_button(name) else None

    box = wait_until(f"the button {name!r}", is_steady)
    # Another dialog may follow at once.
    ask(_TELL_END.format(button=_FIND_BUTTON.format(name=name)))
    Device.move(*box.middle)
    Device.click_here()
    wait_until("the dialog's end",
               lambda: dialog_button(name) is None or ask("global.velloraHasEnded"))


def has_shortcuts_portal():
    """Whether this GNOME's portal has shortcuts, as it has from 48 on."""
    return "GlobalShortcuts" in \
        Path("/usr/share/xdg-desktop-portal/portals/gnome.portal").read_text()


def allow_shortcut():
    """Answers GNOME's question for it, which comes from the version on that has a portal for it."""
    if has_shortcuts_portal():
        answer("Add")
