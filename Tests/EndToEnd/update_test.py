# SPDX-License-Identifier: MIT
"""The program, installed from a package, brings itself up to date: the real PackageKit on a system
bus of its own, and the window as a screen reader meets it."""

import os
import tempfile
import unittest
from pathlib import Path

from support import accessibility, desktop, main
from support.accessibility import control, has_control
from support.desktop import key, tool
from support.packagekit import PackageKit, Repository, skip_unless_possible
from support.program import Program, activate_action, is_on_bus
from support.update_window import (BUTTON, LABEL, TITLE, check_for_updates, click, has_focus,
                                   is_shown, says, showing)
from support.waiting import wait_until

SETTINGS = "Vellora Settings"
OLD_BINARY, NEW_BINARY = os.environ["VELLORA_VERSIONS"].split(":")
OLD, NEW = "0.1.0-1", "0.2.0-1"
BAR = "progress bar"


def installed_files(binary):
    """What a package of the program holds: the installed tree, with this version of it."""
    installed = Path(os.environ["VELLORA_INSTALLED"])
    shared = [each for each in (installed / "share/vellora").rglob("*") if each.is_file()]
    return {"/usr/bin/vellora": binary,
            **{f"/usr/{each.relative_to(installed)}": each for each in shared}}


class UpdateTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        skip_unless_possible()
        folder = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="repository-",
                                                                   dir="/tmp"))
        cls.repository = Repository(folder)
        cls.enterClassContext(cls.repository)
        cls.old = cls.repository.build(OLD, files=installed_files(OLD_BINARY))
        cls.new = cls.repository.build(NEW, files=installed_files(NEW_BINARY),
                                       notes="Reads <b>faster</b>.")

    def setUp(self):
        self.packagekit = self.enterContext(PackageKit())
        self.packagekit.install(self.old)
        self.path = Path(self.packagekit.folder) / "system/usr/bin/vellora"

    def publish(self, *files):
        self.repository.withdraw_all()
        self.repository.publish(*files, notes="Reads <b>faster</b>.")
        self.packagekit.add_source(self.repository)

    def program(self):
        return Program({}, {**accessibility.ENVIRONMENT, **self.packagekit.environment},
                       command=[str(self.path)])

    def test_from_the_question_to_the_restart(self):
        self.publish(self.old, self.new)
        with self.program() as program:
            with self.repository.held():
                check_for_updates()
                says("Looking for updates")
                self.assertEqual(showing(BAR), ["Progress"])
                self.assertEqual(showing(BUTTON), ["Cancel"])
            says("Vellora 0.2.0 is available")
            says("You have version 0.1.0.")
            notes = control(TITLE, "text", "What is new")
            self.assertIn("Reads <b>faster</b>.", notes.text)
            self.assertEqual(showing(BUTTON), ["Later", "Install"])
            has_focus("Install")
            install = control(TITLE, BUTTON, "Install")
            self.assertTrue(install.description.startswith("Vellora 0.2.0 is available"))
            with self.packagekit.locked("system/var/lib/dpkg/lock"):
                click("Install")
                says("Waiting until another installation has ended…")
                self.assertEqual(self.packagekit.installed_version(), OLD)
            says("Vellora 0.2.0 is installed")
            self.assertEqual(self.packagekit.installed_version(), NEW)
            self.assertEqual(showing(BUTTON), ["Later", "Restart Vellora"])
            executable = Path(f"/proc/{program.process.pid}/exe")
            self.assertEqual(os.readlink(executable), f"{self.path} (deleted)")
            click("Restart Vellora")
            wait_until("the new program", lambda: os.readlink(executable) == str(self.path))
            wait_until("the window's end", lambda: not desktop.windows_titled(TITLE))
            wait_until("the program on the session bus", is_on_bus)
            activate_action("settings")
            wait_until("the new version", lambda: has_control(SETTINGS, LABEL, "v0.2.0"))
            self.assertTrue(program.is_running())

    def test_keyboard_alone(self):
        self.publish(self.old, self.new)
        with self.program():
            check_for_updates()
            says("Vellora 0.2.0 is available")
            has_focus("Install")
            self.packagekit.answer("no")
            key("Return")
            says("The update was not installed")
            has_focus("Try Again")
            command = control(TITLE, "text", "Command").text
            self.assertEqual(command,
                             "sudo apt update && sudo apt install --only-upgrade vellora")
            key("alt+o")
            wait_until("the command on the clipboard", lambda: tool(
                "xclip", "-selection", "clipboard", "-out", check=False) == command)
            self.packagekit.answer("yes")
            key("alt+t")
            says("Vellora 0.2.0 is available")
            key("Escape")
            wait_until("the window's end", lambda: not desktop.windows_titled(TITLE))
            self.assertEqual(self.packagekit.installed_version(), OLD)

    def test_up_to_date_only_when_it_could_look(self):
        self.publish(self.old)
        with self.program():
            check_for_updates()
            says("Vellora is up to date")
            self.assertEqual(showing(BUTTON), ["Close"])
            self.packagekit.break_source()
            activate_action("check-for-updates")
            says("Vellora cannot look for updates.")
            self.assertFalse(is_shown(LABEL, "Vellora is up to date"))
            self.packagekit.kill()
            self.packagekit.add_source(self.repository)
            click("Try Again")
            says("Vellora is up to date")


if __name__ == "__main__":
    main()
