# SPDX-License-Identifier: MIT
"""What Scripts/run does with the desktop entry of a program that is not installed."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import built_entry, main
from support.built_entry import FILE

PROGRAM = Path("/usr/bin/true")
OWN = "[Desktop Entry]\nType=Application\nName=Mine\nExec=/opt/mine/vellora\n"


class BuiltEntryTest(unittest.TestCase):
    def tearDown(self):
        FILE.unlink(missing_ok=True)

    def add(self, program=PROGRAM, status=0):
        done = built_entry.add(program)
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout + done.stderr

    def keys(self):
        return dict(line.split("=", 1) for line in FILE.read_text().splitlines() if "=" in line)

    def test_it_is_said_and_valid(self):
        self.assertIn(str(FILE), self.add())
        keys = self.keys()
        self.assertEqual((keys["Exec"], keys["TryExec"]), (str(PROGRAM), str(PROGRAM)))
        self.assertEqual(keys["X-KDE-DBUS-Restricted-Interfaces"], "org.kde.KWin.ScreenShot2")
        self.assertTrue(Path(keys["Icon"]).is_file())
        # No bus knows how to start it.
        self.assertNotIn("DBusActivatable", keys)
        checked = subprocess.run(["desktop-file-validate", str(FILE)], capture_output=True,
                                 text=True, check=False)
        self.assertEqual((checked.returncode, checked.stdout), (0, ""))

    def test_once_is_enough(self):
        self.add()
        before = FILE.stat()
        self.assertEqual(self.add(), "")
        self.assertEqual(FILE.stat().st_mtime_ns, before.st_mtime_ns)

    def test_a_stale_one_of_ours_is_replaced(self):
        self.add("/gone/vellora")
        self.assertIn(str(FILE), self.add())
        self.assertEqual(self.keys()["Exec"], str(PROGRAM))

    def test_one_of_the_users_own_stands_and_that_is_said(self):
        FILE.parent.mkdir(parents=True, exist_ok=True)
        FILE.write_text(OWN)
        self.assertIn("stays as it is", self.add(status=1))
        self.assertEqual(FILE.read_text(), OWN)
        self.assertEqual(built_entry.remove().returncode, 1)
        self.assertEqual(FILE.read_text(), OWN)
        # One for this very program is as good as ours.
        FILE.write_text(OWN.replace("/opt/mine/vellora", str(PROGRAM)))
        self.assertEqual(self.add(), "")

    def test_it_goes_when_asked(self):
        self.add()
        self.assertEqual(built_entry.remove().returncode, 0)
        self.assertFalse(FILE.exists())
        self.assertEqual(built_entry.remove().returncode, 0)

    def test_a_path_that_no_entry_can_name(self):
        with tempfile.TemporaryDirectory(dir=os.environ["XDG_RUNTIME_DIR"]) as folder:
            for name in ("two words", "quo\"te", "per%cent", "new\nline", "and&", "bar|"):
                self.assertIn("No desktop entry names", self.add(f"{folder}/{name}", status=1))
        self.assertFalse(FILE.exists())


if __name__ == "__main__":
    main()
