# SPDX-License-Identifier: MIT
"""The shortcut on a desktop that leaves it to the GlobalShortcuts portal: the real
xdg-desktop-portal, with a backend of the tests' own. The program sees nothing of sway's IPC."""

import signal
import subprocess
import sys
import threading
import unittest
from pathlib import Path

from support import accessibility, main
from support.page import Page
from support.pressing import QT_O, assert_captures, assert_reaches
from support.portal_backend import OTHER_WORDS
from support.program import Program, activate_action, settings_file
from support.waiting import wait_until

TEXT = "Between two worlds"
SHORTCUT_ON = {"hotkeyEnabled": "true", "outputMode": "clipboard"}
WITHOUT_IPC = {"SWAYSOCK": None}
DENIED = "GlobalHotkey: Accessibility permission not yet granted"


class Backend:
    """The desktop's part; as a context manager. `lines` is what it was asked for."""

    def __init__(self, answer):
        self._answer, self.lines = answer, []

    def __enter__(self):
        script = Path(__file__).parent / "support/portal_backend.py"
        self._process = subprocess.Popen([sys.executable, "-B", str(script), self._answer],
                                         stdout=subprocess.PIPE, text=True)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        wait_until("the portal's backend", lambda: "ready" in self.lines)
        return self

    def _read(self):
        for line in self._process.stdout:
            self.lines.append(line.strip())

    def __exit__(self, *_):
        self._process.send_signal(signal.SIGTERM)
        self._process.wait(60)
        self._reader.join(60)
        self._process.stdout.close()

    def wait_for(self, line):
        wait_until(f"the portal's {line!r}", lambda: line in self.lines)


class PortalShortcutTest(unittest.TestCase):
    def test_shortcut(self):
        with Backend("allow") as backend, Page(TEXT) as page:
            with Program(SHORTCUT_ON, WITHOUT_IPC):
                backend.wait_for("asked capture SHIFT+LOGO+o")
                backend.wait_for("bound SHIFT+LOGO+o")
                assert_captures("super+shift+o")
                assert_captures("super+shift+o")
                self.assertEqual(page.said(f"key {QT_O}"), [])
            backend.wait_for("closed")
            assert_reaches(page, "super+shift+o")

    def test_other_keys_than_asked_for(self):
        with Backend("other") as backend, \
                Program(SHORTCUT_ON, {**WITHOUT_IPC, **accessibility.ENVIRONMENT}) as program:
            backend.wait_for("asked capture SHIFT+LOGO+o")
            program.logged(f"The desktop gave the shortcut other keys: {OTHER_WORDS}")
            assert_captures("ctrl+shift+d")
            activate_action("settings")
            accessibility.control("Vellora Settings", "label",
                                  f"The desktop listens to: {OTHER_WORDS}")

    def test_a_denial_switches_it_off(self):
        with Backend("deny") as backend, Program(SHORTCUT_ON, WITHOUT_IPC) as program:
            backend.wait_for("asked capture SHIFT+LOGO+o")
            program.logged(DENIED)
            wait_until("the switch off",
                       lambda: "hotkeyEnabled=false" in settings_file().read_text())


if __name__ == "__main__":
    main()
