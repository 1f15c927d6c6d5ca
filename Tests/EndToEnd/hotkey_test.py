# SPDX-License-Identifier: MIT
"""The shortcut, pressed while another program's window has the keyboard."""

import signal
import unittest

from support import desktop, main
from support.comparing import is_dimmed, is_unchanged, settled_screenshot, wait_until_dimmed
from support.desktop import key, tool
from support.page import Page
from support.pressing import NOT_CREATED, QT_O, assert_captures, assert_reaches
from support.program import Program, activate_action, is_on_bus
from support.shortcut import (ALT, CONTROL, K_KEY, O_KEY, SHIFT, SUPER, KeyHolder, is_free,
                              wait_until_free, wait_until_taken)
from support.waiting import wait_until

TEXT = "In front"
ON = {"hotkeyEnabled": "true"}
SHORTCUT = "super+shift+o"
# Qt's number, as the page says it.
QT_ESCAPE = 16777216


class HotkeyTest(unittest.TestCase):
    def assert_never_saw_it(self, page):
        # What is typed afterwards has come: so would have what was typed before.
        count = len(page.said(r"key 88"))
        key("x")
        wait_until("the next key in the window", lambda: len(page.said(r"key 88")) > count)
        self.assertEqual(page.said(f"key {QT_O}") + page.said(f"key {QT_ESCAPE}"), [])

    def test_captures_and_the_window_in_front_sees_nothing(self):
        with Page(TEXT) as page, Program(ON):
            wait_until_taken()
            assert_captures(SHORTCUT)
            assert_captures(SHORTCUT)
            self.assert_never_saw_it(page)

    def test_other_modifiers_go_to_the_window(self):
        with Page(TEXT) as page, Program(ON):
            wait_until_taken()
            for shortcut in ("super+shift+alt+o", "shift+o", "o", "ctrl+shift+o"):
                assert_reaches(page, shortcut)

    def test_locks_do_not_matter(self):
        with Page(TEXT) as page, Program(ON):
            wait_until_taken()
            for locks in (("Caps_Lock",), ("Num_Lock",), ("Caps_Lock", "Num_Lock")):
                for lock in locks:
                    key(lock)
                try:
                    assert_captures(SHORTCUT)
                finally:
                    for lock in locks:
                        key(lock)
            self.assert_never_saw_it(page)

    def test_is_off_by_default(self):
        with Page(TEXT) as page, Program({}) as program:
            program.status_item()
            self.assertTrue(is_free(O_KEY, SHIFT | SUPER))
            assert_reaches(page, SHORTCUT)

    def test_a_shortcut_of_another_program(self):
        with Page(TEXT), KeyHolder(O_KEY, SHIFT | SUPER) as other:
            self.assertTrue(other.granted)
            with Program(ON) as program:
                program.logged(NOT_CREATED)
                before = settled_screenshot()
                key(SHORTCUT)
                wait_until("the press in the other program", lambda: other.presses)
                self.assertTrue(is_unchanged(before))

    def test_bare_key(self):
        with Page(TEXT) as page, Program({**ON, "hotkeyString": "o"}):
            wait_until_taken(O_KEY, 0)
            assert_captures("o")
            assert_reaches(page, "shift+o")

    def test_frees_the_key_at_the_end(self):
        with Program(ON):
            wait_until_taken()
        wait_until_free()

    def test_frees_the_key_when_killed(self):
        program = Program(ON)
        program.start()
        wait_until_taken()
        program.process.send_signal(signal.SIGKILL)
        program.wait_for_end()
        wait_until_free()
        wait_until("the name's release", lambda: not is_on_bus())

    def test_damaged_shortcuts(self):
        for text, (code, modifiers) in {
                '"+++"': (O_KEY, 0),
                '""': (O_KEY, 0),
                '"cmd+space+f5"': (O_KEY, SUPER),
                '"CONTROL+option+shift+a+k+%n%s"': (K_KEY, CONTROL | ALT | SHIFT),
                "k" * 100000: (O_KEY, 0)}.items():
            with self.subTest(text=text[:40]), Program({**ON, "hotkeyString": text}):
                wait_until_taken(code, modifiers)

    @unittest.skipIf(desktop.NAME == "none", "needs a window manager")
    def test_works_from_the_settings_window_too(self):
        with Program(ON):
            wait_until_taken()
            activate_action("settings")
            window, = wait_until("the settings window",
                                 lambda: desktop.windows_titled("Vellora Settings"))
            wait_until("the settings window in front",
                       lambda: tool("xdotool", "getactivewindow", check=False).strip() == window)
            before = settled_screenshot()
            key(SHORTCUT)
            wait_until_dimmed(before)
            key("Escape")
            wait_until("the overlay's end", lambda: not is_dimmed(before))


if __name__ == "__main__":
    main()
