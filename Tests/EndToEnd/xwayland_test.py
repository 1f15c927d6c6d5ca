# SPDX-License-Identifier: MIT
"""The program as an X11 program on sway, which shows those nothing: it says so, and what to do."""

import getpass
import os
import subprocess
import unittest
from pathlib import Path

from support.sway import command
from support.waiting import wait_until


def x11_display():
    """The display of sway's Xwayland, which lets us in once it has started for that."""
    file = Path(os.environ["SWAYSOCK"]).parent / "x11-display"
    command(f"exec xhost +si:localuser:{getpass.getuser()} && printenv DISPLAY > {file}")
    return wait_until("Xwayland's display",
                      lambda: file.read_text().strip() if file.exists() else None)


class XwaylandTest(unittest.TestCase):
    def test_it_says_why_it_cannot_work(self):
        environment = {**os.environ, "DISPLAY": x11_display(), "QT_QPA_PLATFORM": "xcb"}
        del environment["WAYLAND_DISPLAY"]
        done = subprocess.run([os.environ["VELLORA_BINARY"]], stdin=subprocess.DEVNULL,
                              env=environment, capture_output=True, text=True, timeout=60,
                              check=False)
        lines = done.stderr.strip().splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertRegex(lines[0], "^vellora: Vellora was started as an X11 program on a Wayland ")
        self.assertIn("lets no program see the screen", lines[0])
        self.assertIn("Start it with WAYLAND_DISPLAY set", lines[0])
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
