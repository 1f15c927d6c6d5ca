# SPDX-License-Identifier: MIT
"""Tests that are alike on several Wayland desktops, for their test cases to derive from."""

import signal

from .desktop import Clipboard
from .page import Page
from .pressing import NOT_CREATED, QT_O, assert_captures, assert_reaches
from .program import Program, is_on_bus, wait_until_launched
from .waiting import holds_for, wait_until

TEXT = "Between two worlds"
SHORTCUT_ON = {"hotkeyEnabled": "true", "outputMode": "clipboard"}


class ShortcutTests:
    """The shortcut where the desktop's keys can be pressed."""

    # One that the desktop has itself, as the settings have it.
    TAKEN = None

    def test_shortcut(self):
        with Page(TEXT) as page, Program(SHORTCUT_ON):
            wait_until_launched()
            assert_captures("super+shift+o")
            assert_captures("super+shift+o")
            self.assertEqual(page.said(f"key {QT_O}"), [])
            assert_reaches(page, "ctrl+shift+o")

    def test_shortcut_is_freed_at_the_end(self):
        with Page(TEXT) as page:
            with Program(SHORTCUT_ON):
                wait_until_launched()
                assert_captures("super+shift+o")
            assert_reaches(page, "super+shift+o")

    def test_shortcut_is_freed_after_a_kill(self):
        with Page(TEXT) as page:
            killed = Program(SHORTCUT_ON)
            killed.start()
            wait_until_launched()
            assert_captures("super+shift+o")
            killed.process.send_signal(signal.SIGKILL)
            killed.wait_for_end()
            wait_until("the name's release", lambda: not is_on_bus())
            with Program({}):
                wait_until_launched()
                assert_reaches(page, "super+shift+o")

    def test_shortcut_that_is_taken(self):
        with Program({**SHORTCUT_ON, "hotkeyString": self.TAKEN}) as program:
            program.logged(NOT_CREATED)


class ClipboardTests:
    """The clipboard beside other programs."""

    def test_what_another_program_copies_stands(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            Clipboard.put("copied later")
            holds_for("the other program's text", lambda: Clipboard.text() == "copied later", 0.5)
