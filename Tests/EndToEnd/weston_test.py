# SPDX-License-Identifier: MIT
"""A desktop on which the program cannot work: it says so, and why."""

import os
import subprocess
import unittest


class WestonTest(unittest.TestCase):
    def test_it_says_why_it_cannot_work(self):
        done = subprocess.run([os.environ["VELLORA_BINARY"]], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 1)
        lines = done.stderr.strip().splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertRegex(lines[0], "^vellora: Vellora cannot work on this Wayland desktop. ")
        self.assertIn("lets no program see the screen", lines[0])
        self.assertIn("org.freedesktop.portal.Screenshot", lines[0])


if __name__ == "__main__":
    unittest.main(verbosity=2)
