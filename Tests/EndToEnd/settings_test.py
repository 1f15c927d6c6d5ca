# SPDX-License-Identifier: MIT
"""The settings window, used with the pointer and the keyboard and read by a screen reader."""

import os
import unittest
from pathlib import Path

from support import accessibility, desktop, main
from support.accessibility import control, controls, has_control
from support.comparing import is_dimmed, settled_screenshot, stays_unchanged, wait_until_dimmed
from support.desktop import Pointer, frame_box, key, tool, window_box
from support.page import Page
from support.pressing import NOT_CREATED
from support.program import APPLICATION_ID, Program, activate_action, is_on_bus, settings_file
from support.shortcut import (CONTROL, K_KEY, O_KEY, SHIFT, SUPER, KeyHolder, is_taken,
                              wait_until_free, wait_until_taken)
from support.waiting import holds_for, wait_until

TITLE = "Vellora Settings"
ON = {"hotkeyEnabled": "true"}
ENVIRONMENT = accessibility.ENVIRONMENT
RECORDER = "text", "Shortcut"
ENABLE = "check box", "Enable global hotkey"


def open_settings():
    wait_until("the program on the session bus", is_on_bus)
    # Asked once: what is asked again may be done when the window has been closed meanwhile.
    activate_action("settings")
    window, = wait_until("the settings window", lambda: desktop.windows_titled(TITLE))
    wait_until("the settings window in front",
               lambda: tool("xdotool", "getactivewindow", check=False).strip() == window)
    return window


def close():
    window, = wait_until("the settings window", lambda: desktop.windows_titled(TITLE))
    tool(os.environ["VELLORA_CLOSE_WINDOW"], window)
    wait_until("the window's end", lambda: not desktop.windows_titled(TITLE))


def has_its_place():
    """Whether the program knows by now where the window manager has put the window."""
    window, = desktop.windows_titled(TITLE) or [None]
    return window and accessibility.window(TITLE).box == window_box(window)


def click(role, name):
    wait_until("the window at its place", has_its_place)
    Pointer.click(*control(TITLE, role, name).box.middle)


def stored(name):
    file = settings_file()
    lines = file.read_text().splitlines() if file.exists() else []
    return next((line.partition("=")[2] for line in lines if line.startswith(f"{name}=")), None)


def record(keys, shown):
    """Clicks the recorder, presses the keys and waits until they are shown."""
    click(*RECORDER)
    wait_until("the prompt", lambda: control(TITLE, *RECORDER).text == "Type shortcut…")
    key(keys)
    wait_until(f"{shown} in the recorder", lambda: control(TITLE, *RECORDER).text == shown)


class SettingsTest(unittest.TestCase):
    def assert_captures(self, shortcut):
        before = settled_screenshot()
        key(shortcut)
        wait_until_dimmed(before)
        key("Escape")
        wait_until("the overlay's end", lambda: not is_dimmed(before))

    def test_recording_changes_the_live_shortcut(self):
        with Page("In front") as page, Program(ON, ENVIRONMENT):
            wait_until_taken()
            open_settings()
            record("ctrl+super+k", "⌘⌃K")
            wait_until("the shortcut in the file",
                       lambda: stored("hotkeyString") == "cmd+ctrl+k")
            self.assertTrue(is_taken(K_KEY, CONTROL | SUPER))
            wait_until_free()
            self.assert_captures("ctrl+super+k")
            close()
            self.assert_captures("ctrl+super+k")
            self.assertEqual(page.said("key 75"), [])

    def test_recording_ignores_what_is_no_shortcut(self):
        with Program(ON, ENVIRONMENT):
            wait_until_taken()
            open_settings()
            click(*RECORDER)
            wait_until("the prompt", lambda: control(TITLE, *RECORDER).text == "Type shortcut…")
            for keys in ("k", "shift+F5", "super+space", "Return", "Tab", "ctrl+comma"):
                key(keys)
            holds_for("recording", lambda: control(TITLE, *RECORDER).text == "Type shortcut…", 0.3)
            key("Escape")
            wait_until("the old shortcut", lambda: control(TITLE, *RECORDER).text == "⌘⇧O")
            self.assertIsNone(stored("hotkeyString"))

    def test_recording_does_not_reach_menus(self):
        with Program(ON, ENVIRONMENT) as program:
            open_settings()
            record("ctrl+q", "⌃Q")
            self.assertTrue(program.is_running())
            wait_until("the shortcut in the file", lambda: stored("hotkeyString") == "ctrl+q")

    def test_switching_off_frees_the_key(self):
        with Page("In front"), Program(ON, ENVIRONMENT):
            wait_until_taken()
            open_settings()
            self.assertTrue(has_control(TITLE, *RECORDER))
            click(*ENABLE)
            wait_until("the switch in the file", lambda: stored("hotkeyEnabled") == "false")
            wait_until_free()
            wait_until("the row's end", lambda: not has_control(TITLE, *RECORDER))
            with KeyHolder(O_KEY, SHIFT | SUPER) as other:
                self.assertTrue(other.granted)
                before = settled_screenshot()
                key("super+shift+o")
                wait_until("the press in the other program", lambda: other.presses)
                stays_unchanged("without an overlay", before, 0.3)
            click(*ENABLE)
            wait_until("the switch in the file", lambda: stored("hotkeyEnabled") == "true")
            self.assertTrue(is_taken())
            self.assert_captures("super+shift+o")

    def test_recovers_from_a_shortcut_of_another_program(self):
        with KeyHolder(O_KEY, SHIFT | SUPER) as other, Program(ON, ENVIRONMENT) as program:
            self.assertTrue(other.granted)
            program.logged(NOT_CREATED)
            open_settings()
            record("ctrl+super+k", "⌘⌃K")
            wait_until("the shortcut in the file",
                       lambda: stored("hotkeyString") == "cmd+ctrl+k")
            self.assertTrue(is_taken(K_KEY, CONTROL | SUPER))
            self.assert_captures("ctrl+super+k")

    def test_a_key_of_another_program_is_recorded_and_said_to_be_taken(self):
        with KeyHolder(K_KEY, CONTROL | SUPER) as other, Program(ON, ENVIRONMENT) as program:
            self.assertTrue(other.granted)
            wait_until_taken()
            open_settings()
            record("ctrl+super+k", "⌘⌃K")
            program.logged(NOT_CREATED)
            wait_until("the reason in the settings", lambda: any(
                each.role == "label" and each.name.startswith("This shortcut does not work here")
                for each in controls(TITLE)))
            self.assertEqual(other.presses, 0)
            # What was given up for it is free, and can be had again.
            wait_until_free()
            record("super+shift+o", "⌘⇧O")
            wait_until("the shortcut in the file",
                       lambda: stored("hotkeyString") == "cmd+shift+o")
            self.assert_captures("super+shift+o")

    def test_every_control_writes_at_once(self):
        with Program({"shutterSound": "true"}, ENVIRONMENT):
            open_settings()
            for segment, mode in (("Clipboard Only", "clipboard"), ("Popup Only", "popup"),
                                  ("Both", "both")):
                click("radio button", segment)
                wait_until(f"{mode} in the file", lambda mode=mode: stored("outputMode") == mode)
            click("check box", "Shutter sound")
            wait_until("the sound's switch", lambda: stored("shutterSound") == "false")
            control(TITLE, "check box", "Show notification when copied").do("Toggle")
            wait_until("the mark's switch", lambda: stored("showNotification") == "false")
            entry = Path(os.environ["XDG_CONFIG_HOME"]) / f"autostart/{APPLICATION_ID}.desktop"
            for on in (True, False):
                control(TITLE, "check box", "Launch at login").do("Toggle")
                wait_until("the autostart entry", lambda on=on: entry.exists() == on)
                wait_until("the switch in the file",
                           lambda on=on: stored("launchAtLogin") == str(on).lower())

    def test_keyboard_alone(self):
        with Program({}, ENVIRONMENT):
            open_settings()
            wait_until("the focus", lambda: control(TITLE, "radio button", "Both").is_("focused"))
            key("Left")
            wait_until("the mode", lambda: stored("outputMode") == "popup")
            for _ in range(3):
                key("Tab")
            key("space")
            wait_until("the shortcut's switch", lambda: stored("hotkeyEnabled") == "true")
            self.assertTrue(is_taken())
            wait_until("the recorder", lambda: has_control(TITLE, *RECORDER))
            key("Tab")
            key("space")
            wait_until("the prompt", lambda: control(TITLE, *RECORDER).text == "Type shortcut…")
            key("ctrl+super+k")
            wait_until("the shortcut in the file",
                       lambda: stored("hotkeyString") == "cmd+ctrl+k")
            self.assertTrue(is_taken(K_KEY, CONTROL | SUPER))
            key("alt+s")
            wait_until("the sound's switch", lambda: stored("shutterSound") == "true")

    def test_screen_readers_find_every_control(self):
        with Program(ON, ENVIRONMENT):
            open_settings()
            wait_until("the recorder", lambda: has_control(TITLE, *RECORDER))
            found = [(each.role, each.name) for each in controls(TITLE)
                     if each.is_focusable and each.is_showing
                     and each.name != TITLE]
            self.assertEqual(found, [
                ("radio button", "Clipboard Only"), ("radio button", "Popup Only"),
                ("radio button", "Both"), ("check box", "Shutter sound"),
                ("check box", "Show notification when copied"), ENABLE, RECORDER,
                ("check box", "Launch at login"), ("link", "vellora.org"),
                ("push button", "Check for Updates")])
            groups = [each.name for each in controls(TITLE) if each.role == "panel" and each.name
                      and each.is_showing]
            self.assertEqual(groups, ["Output", "After OCR", "Capture", "Keyboard Shortcut",
                                      "General", "About"])
            recorder = control(TITLE, *RECORDER)
            self.assertTrue(recorder.description.startswith("Super + Shift + O."))
            self.assertTrue(control(TITLE, "radio button", "Both").is_("checked"))

    def test_one_window_that_remembers_its_place(self):
        with Program({}) as program:
            window = open_settings()
            box = window_box(window)
            self.assertEqual((box.width, box.height), (desktop.points(380), desktop.points(420)))
            activate_action("settings")
            self.assertEqual(desktop.windows_titled(TITLE), [window])
            self.assertIsNone(stored("settingsWindowFrame"))
            tool("xdotool", "windowsize", "--sync", window, "500", "450")
            tool("xdotool", "windowmove", "--sync", window, "90", "70")
            frame = self.settled_frame(window)
            text = stored("settingsWindowFrame")
            # Opening it again and again does not make it wander.
            for _ in range(3):
                close()
                window = open_settings()
                self.assertEqual(self.settled_frame(window), frame)
                self.assertEqual(stored("settingsWindowFrame"), text)
            program.quit()
            program.check()
        with Program(None):
            window = open_settings()
            self.assertEqual(self.settled_frame(window), frame)
            self.assertEqual(stored("settingsWindowFrame"), text)

    def settled_frame(self, window):
        """The window's frame, once the window manager leaves it alone and the file agrees."""
        def agreed():
            one, text = frame_box(window), stored("settingsWindowFrame")
            x, y, width, height = (float(each) for each in
                                   text.strip('"').replace("{", "").replace("}", "").split(", "))
            bottom = desktop.SCREENS[0].height / desktop.SCALE - y
            told = tuple(round(desktop.points(each)) for each in
                         (x, bottom - height, width, height))
            return one if told == tuple(one) and frame_box(window) == one else None
        try:
            return wait_until("the frame in the file",
                              lambda: stored("settingsWindowFrame") and agreed())
        except AssertionError as error:
            raise AssertionError(f"{frame_box(window)} on the screen, "
                                 f"{stored('settingsWindowFrame')} in the file") from error

    def test_damaged_frames(self):
        for text in ("", "somewhere", "{{0, 0}, {0, 0}}", "{{-90000, 1e300}, {5, -1e300}}",
                     "{{nan, inf}, {1, 2}}"):
            with self.subTest(text=text), \
                    Program({"settingsWindowFrame": f'"{text}"'}) as program:
                window = open_settings()
                box = window_box(window)
                self.assertGreaterEqual(box.width, desktop.points(320))
                self.assertGreaterEqual(box.height, desktop.points(220))
                self.assertTrue(program.is_running())


if __name__ == "__main__":
    main()
