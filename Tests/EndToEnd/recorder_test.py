# SPDX-License-Identifier: MIT
"""Recording another shortcut on Wayland, where programs are told of keys only while they have the
keyboard, and where the desktop keeps its own."""

import unittest

from support import accessibility, desktop, main
from support.accessibility import control, controls
from support.desktop import WALLPAPER, key, points, screenshot
from support.page import Page
from support.pressing import NOT_CREATED
from support.program import Program, activate_action, settings_file, wait_until_launched
from support.waiting import wait_until

if desktop.NAME == "gnome":
    from support.gnome_dialogs import answer

TITLE = "Vellora Settings"
RECORDER = "text", "Shortcut"
ON = {"hotkeyEnabled": "true", "outputMode": "clipboard"}
# One that the desktop has itself: as it is pressed, shown and stored.
TAKEN = {
    "sway": ("super+shift+d", "⌘⇧D", "cmd+shift+d"),
    "kwin_wayland": ("super+d", "⌘D", "cmd+d"),
    "gnome": ("super+a", "⌘A", "cmd+a"),
}


def start_recording():
    activate_action("settings")
    window, = wait_until("the settings", lambda: desktop.windows_titled(TITLE))
    wait_until("the settings' focus", lambda: desktop.active_window() == int(window))
    control(TITLE, *RECORDER).do("SetFocus")
    wait_until("the recorder's focus", lambda: control(TITLE, *RECORDER).is_("focused"))
    key("space")
    wait_until("the prompt", lambda: control(TITLE, *RECORDER).text == "Type shortcut…")
    if desktop.NAME == "gnome" and not RecorderTest.has_answered:
        # The shell asks once whether the program may hear its shortcuts.
        answer("Allow")
        RecorderTest.has_answered = True
        wait_until("the settings' focus", lambda: desktop.active_window() == int(window))
        # The program keeps the shell from its shortcuts again once it knows that itself.
        wait_until("the recorder's focus", lambda: control(TITLE, *RECORDER).is_("focused"))


def wait_until_recorded(shown, stored):
    wait_until(f"{shown} in the recorder", lambda: control(TITLE, *RECORDER).text == shown)
    wait_until("the shortcut in the file",
               lambda: f"hotkeyString={stored}\n" in settings_file().read_text())


def wallpaper_is(colour):
    """By a place beside all windows: those change by themselves, when they lose the keyboard."""
    screen = desktop.SCREENS[0]
    return abs(screenshot()[screen.bottom - points(60), screen.right - 9] - colour).max() <= 2


def assert_begins_a_capture(shortcut):
    key(shortcut)
    wait_until("the dim", lambda: wallpaper_is(round(WALLPAPER * 0.75)))
    key("Escape")
    wait_until("the overlay's end", lambda: wallpaper_is(WALLPAPER))


class RecorderTest(unittest.TestCase):
    has_answered = False

    def test_recording_changes_the_live_shortcut(self):
        with Page("In front") as page, Program(ON, accessibility.ENVIRONMENT):
            wait_until_launched()
            assert_begins_a_capture("super+shift+o")
            start_recording()
            # The shortcut itself, which the desktop knows already, is a key like others meanwhile.
            key("super+shift+o")
            wait_until_recorded("⌘⇧O", "cmd+shift+o")
            start_recording()
            key("ctrl+super+k")
            wait_until_recorded("⌘⌃K", "cmd+ctrl+k")
            assert_begins_a_capture("ctrl+super+k")
            self.assertEqual(page.said("key 75"), [])

    def test_keys_of_the_desktop_can_be_recorded_and_are_said_to_be_taken(self):
        pressed, shown, stored = TAKEN[desktop.NAME]
        with Page("In front"), Program(ON, accessibility.ENVIRONMENT) as program:
            wait_until_launched()
            start_recording()
            key(pressed)
            wait_until_recorded(shown, stored)
            program.logged(NOT_CREATED)
            wait_until("the reason in the settings", lambda: any(
                each.role == "label" and each.name.startswith("This shortcut does not work here")
                for each in controls(TITLE)))
            # Nothing of it stays: what is free can be had again.
            start_recording()
            key("ctrl+super+k")
            wait_until_recorded("⌘⌃K", "cmd+ctrl+k")
            assert_begins_a_capture("ctrl+super+k")


if __name__ == "__main__":
    main()
