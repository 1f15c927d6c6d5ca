# SPDX-License-Identifier: MIT
"""Scripts/in-debian with a release of a few programs: what a command finds there, and what is left
when it has ended. Only for root, who alone can mount."""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SKIPPED = 77
SOURCE = Path(os.environ["VELLORA_SOURCE"])
PROGRAMS = ("sh", "env", "cat", "sleep", "touch")
PATIENCE = 120


def make_release(folder):
    """As in-debian keeps one: the least that a command runs in."""
    root = folder / "root"
    for name in ("etc", "proc", "sys", "dev", "tmp", "run", "usr/bin", "vellora"):
        (root / name).mkdir(parents=True)
    (root / "bin").symlink_to("usr/bin")
    for program in PROGRAMS:
        file = shutil.which(program)
        shutil.copy(file, root / "usr/bin")
        told = subprocess.run(["ldd", file], capture_output=True, text=True, check=True).stdout
        for library in re.findall(r"(/\S+) \(0x", told):
            place = root / library[1:]
            place.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(library, place)


class InDebianTest(unittest.TestCase):
    def setUp(self):
        self.home = Path(tempfile.mkdtemp(prefix="vellora-debian-"))
        self.addCleanup(shutil.rmtree, self.home)
        make_release(self.home)
        self.environment = {**os.environ, "VELLORA_DEBIAN": str(self.home), "CI": "true",
                            "VELLORA_OF_A_TEST": "passed on", "OF_A_TEST": "kept back"}

    def start(self, *command, **options):
        return subprocess.Popen([SOURCE / "Scripts/in-debian", "13", *command],
                                env=self.environment, stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                **options)

    def run_there(self, script, given=""):
        process = self.start("sh", "-c", script)
        said, _ = process.communicate(given, timeout=PATIENCE)
        return process.returncode, said

    def assert_nothing_is_mounted(self):
        self.assertNotIn(str(self.home), Path("/proc/self/mounts").read_text())

    def test_command_sees_the_tree_and_keeps_its_own_build(self):
        status, said = self.run_there("cat Scripts/in-debian; touch build/left; exit 7")
        self.assertEqual((status, said), (7, (SOURCE / "Scripts/in-debian").read_text()))
        self.assertEqual([file.name for file in (self.home / "build").glob("*/*")], ["left"])
        self.assertFalse((SOURCE / "build/left").exists())
        self.assert_nothing_is_mounted()

    def test_what_is_passed_on(self):
        status, said = self.run_there(
            'cat; echo "$CI, $VELLORA_OF_A_TEST, $OF_A_TEST, $VELLORA_DEBIAN"', "standard input; ")
        self.assertEqual((status, said), (0, "standard input; true, passed on, , \n"))

    def test_nothing_of_an_ended_command_is_left(self):
        # Each has the pipe's other end open as long as it lives.
        process = self.start("sh", "-c", "sleep 600 & echo ready; sleep 600; echo not to be said")
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stdin.close)
        self.assertEqual(process.stdout.readline(), "ready\n")
        begun = time.monotonic()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.stdout.read(), "")
        self.assertEqual(process.wait(PATIENCE), 128 + signal.SIGTERM)
        self.assertLess(time.monotonic() - begun, PATIENCE)
        self.assert_nothing_is_mounted()

    def test_unknown_release(self):
        done = subprocess.run([SOURCE / "Scripts/in-debian", "11", "true"], capture_output=True,
                              text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("12 or 13", done.stderr)


def can_mount():
    probe = ["unshare", "--mount", "--propagation", "private", "--pid", "--fork", "--ipc", "true"]
    return os.getuid() == 0 and shutil.which("unshare") \
        and subprocess.run(probe, stderr=subprocess.DEVNULL, check=False).returncode == 0


if __name__ == "__main__":
    if not can_mount():
        print("skipped: only root can mount, and not in every container")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
