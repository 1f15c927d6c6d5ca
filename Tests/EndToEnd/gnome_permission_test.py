# SPDX-License-Identifier: MIT
"""GNOME's question whether the program may take pictures of the screen, asked by the shell's own
dialog of a program that the desktop has started: one with an id, of which a window has to be in
front for the shell to ask at all."""

import os
import re
import time
import unittest
from pathlib import Path

from support import accessibility, desktop, main
from support.accessibility import control
from support.artifacts import keep
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import key
from support.gnome import grabbed_keys, set_permission, stored_permission
from support.gnome_dialogs import allow_shortcut, answer, dialog_button
from support.page import Page
from support.program import Program, activate_action, binary, is_on_bus
from support.scope import Unit
from support.status_notifier import read
from support.waiting import holds_for, wait_until
from support.wayland_tests import TEXT

ID = "org.vellora.Vellora"
MENU = f"app-gnome-{ID}-%d.scope"
AUTOSTART = f"app-{ID}@autostart.service"
WINDOW = "Vellora"
DENIED = ("Vellora: Screen Recording permission not granted: It was denied; this changes it: "
          "Settings, Applications, Vellora, Screenshots.")
REFUSED = "Only the focused app"
# Seconds that the user takes to allow it, at least. The portal's patience is waited for in any case;
# a longer one is for trying by hand.
ALLOWED_AFTER = float(os.environ.get("VELLORA_ALLOW_AFTER", "0"))
UNANSWERED = ("Vellora: Screen Recording permission not granted: The desktop’s portal was asked, "
              "and gave no picture.")


def windows():
    return list(desktop.listed_windows().values())


def portal_failures(reason):
    """How many questions have come to nothing for this reason, which the portal tells nobody but its
    log."""
    log = Path(os.environ["VELLORA_DESKTOP_LOGS"]) / "dbus-daemon.log"
    return len(re.findall(f"Failed to show access dialog: .*{reason}",
                          log.read_text(errors="replace")))


def button_to_ask_again():
    """The button, which the window shows once the question was refused."""
    button = control(WINDOW, "push button", "Ask Again")
    return button if button.is_showing else None


class GnomePermissionTest(unittest.TestCase):
    def setUp(self):
        set_permission(None)

    def tearDown(self):
        set_permission("yes")

    def start(self, unit=MENU, environment=None, **settings):
        """The program as the desktop starts it, ready to be asked."""
        started = self.enterContext(Unit(unit)) if unit else None
        program = self.enterContext(Program(
            {"outputMode": "clipboard", **settings}, environment,
            command=started.command(binary()) if started else None))
        wait_until("the program on the session bus", is_on_bus)
        program.status_item()
        return program

    def enterContext(self, context):
        """As Python has it from 3.11 on."""
        entered = context.__enter__()
        self.addCleanup(lambda: context.__exit__(None, None, None))
        return entered

    def assert_captures(self, before):
        wait_until_dimmed(before)
        key("Escape")
        wait_until_unchanged("the overlay's end", before)
        self.assertNotIn(WINDOW, windows())

    def test_allow_with_nothing_in_front(self):
        self.start()
        before = settled_screenshot()
        activate_action("capture")
        wait_until("the question", lambda: dialog_button("Allow"))
        self.assertEqual(windows(), [WINDOW])
        answer("Allow")
        self.assert_captures(before)
        self.assertEqual(stored_permission(), {ID: ["yes"]})

    def test_allow_with_another_window_in_front(self):
        with Page(TEXT):
            self.start(AUTOSTART, hotkeyEnabled="true")
            allow_shortcut()
            before = settled_screenshot()
            activate_action("capture")
            answer("Allow")
            self.assert_captures(before)
            self.assertEqual(stored_permission(), {ID: ["yes"]})

    def test_without_an_id(self):
        with Page(TEXT):
            self.start(None)
            before = settled_screenshot()
            activate_action("capture")
            answer("Allow")
            self.assert_captures(before)
            self.assertEqual(stored_permission(), {"": ["yes"]})

    def test_denial(self):
        program = self.start()
        before = settled_screenshot()
        activate_action("capture")
        answer("Deny")
        wait_until_unchanged("what was there before", before)
        self.assertEqual(stored_permission(), {ID: ["no"]})
        program.logged(DENIED)
        # The shell would not ask again, and neither do we.
        activate_action("capture")
        # Looked for at once, as it goes after three seconds.
        wait_until("the mark", lambda: "Permission needed" in read("Title"))
        program.logged(DENIED)
        holds_for("without a window", lambda: WINDOW not in windows(), 1)
        keep("gnome-permission-denied")
        # The user changes it in the settings.
        set_permission("yes")
        self.assert_captures(before)
        self.assertTrue(program.is_running())

    def test_dismissal_by_key(self):
        program = self.start()
        before = settled_screenshot()
        activate_action("capture")
        wait_until("the question", lambda: dialog_button("Deny"))
        # Here, as the portal waits only 25 seconds for an answer that is to count.
        settled_screenshot()
        keep("gnome-permission-question")
        key("Escape")
        wait_until_unchanged("what was there before", before)
        self.assertEqual(stored_permission(), {ID: ["no"]})
        program.logged(DENIED)

    def test_answer_that_comes_too_late_for_the_portal(self):
        self.start()
        before = settled_screenshot()
        activate_action("capture")
        wait_until("the question", lambda: dialog_button("Allow"))
        asked = time.monotonic()
        wait_until("the portal's patience to end", lambda: portal_failures("Timeout"), 60)
        wait_until("the user", lambda: time.monotonic() - asked >= ALLOWED_AFTER, ALLOWED_AFTER)
        print(f"allowed after {time.monotonic() - asked:.1f} s")
        answer("Allow")
        # That has led to nothing: it is asked once more, by itself.
        wait_until("the question", lambda: dialog_button("Allow"))
        self.assertEqual(stored_permission(), {})
        answer("Allow")
        self.assert_captures(before)
        self.assertEqual(stored_permission(), {ID: ["yes"]})

    def test_question_that_the_shell_refuses(self):
        # As from a terminal that has an id and gives it to what it starts.
        program = self.start("app-gnome-org.example.Terminal-%d.scope", accessibility.ENVIRONMENT)
        before = settled_screenshot()
        activate_action("capture")
        again = wait_until("the window's other text", button_to_ask_again)
        settled_screenshot()
        keep("gnome-permission-refused")
        self.assertIsNone(dialog_button("Allow"))
        # It asks anew, and so does the next click.
        refused = portal_failures(REFUSED)
        again.do("Press")
        wait_until("another refusal", lambda: portal_failures(REFUSED) == refused + 1)
        activate_action("capture")
        wait_until("one more refusal", lambda: portal_failures(REFUSED) == refused + 2)
        wait_until("the window's other text", button_to_ask_again)
        key("Escape")
        wait_until_unchanged("what was there before", before)
        program.logged(UNANSWERED)

    def test_permission_that_is_neither(self):
        # What else may be stored is for ScreenshotQuestionTest; here the shell asks all the same.
        set_permission("maybe")
        program = self.start(None)
        before = settled_screenshot()
        activate_action("capture")
        answer("Deny")
        wait_until_unchanged("what was there before", before)
        program.logged("Vellora: Screen Recording permission not granted: .*")
        self.assertEqual(stored_permission()[""], ["no"])

    def test_shortcut(self):
        with Page(TEXT):
            others = wait_until("the settings daemon's own keys", grabbed_keys)
            self.start(hotkeyEnabled="true")
            allow_shortcut()
            wait_until("the shortcut", lambda: grabbed_keys() == others + 1)
            before = settled_screenshot()
            key("super+shift+o")
            answer("Allow")
            self.assert_captures(before)


if __name__ == "__main__":
    main()
