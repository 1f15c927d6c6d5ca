# SPDX-License-Identifier: MIT
"""The X server goes (a logout, a crash), whatever the program is doing: it ends with one line."""

import os
import subprocess
import unittest

from support import main
from support.program import Program, activate_action, is_on_bus
from support.waiting import wait_until


class Server:
    """An X server of the test's own, so that it can die without taking the test's desktop along."""

    def __enter__(self):
        reading, writing = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "800x600x24", "-nolisten", "tcp"],
            pass_fds=(writing,), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            self.name = f":{pipe.readline().strip()}"
        return self

    def __exit__(self, *_):
        self.die()

    def die(self):
        self.process.kill()
        self.process.wait()

    def windows(self):
        """How many windows stand on the screen."""
        tree = subprocess.run(["xwininfo", "-root", "-children"], capture_output=True, text=True,
                              env={**os.environ, "DISPLAY": self.name}, check=False).stdout
        return sum("IsViewable" in self._state(line.split()[0])
                   for line in tree.splitlines() if line.strip().startswith("0x"))

    def _state(self, window):
        return subprocess.run(["xwininfo", "-id", window], capture_output=True, text=True,
                              env={**os.environ, "DISPLAY": self.name}, check=False).stdout


class ServerDeathTest(unittest.TestCase):
    def assert_ends_in_order(self, action):
        with Server() as server:
            program = Program({}, {"DISPLAY": server.name})
            program.start()
            wait_until("the program on the session bus", is_on_bus)
            if action:
                before = server.windows()
                activate_action(action)
                wait_until("the window", lambda: server.windows() > before)
            server.die()
            self.assertEqual(program.wait_for_end(), 1, program.log)
            self.assertEqual(len(program.log), 1, program.log)
            self.assertIn("X11 connection broke", program.log[0])
            wait_until("the name's release", lambda: not is_on_bus())

    def test_idle(self):
        self.assert_ends_in_order(None)

    def test_dimmed(self):
        self.assert_ends_in_order("capture")

    def test_settings(self):
        self.assert_ends_in_order("settings")


if __name__ == "__main__":
    main()
