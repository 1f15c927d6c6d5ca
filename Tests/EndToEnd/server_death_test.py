# SPDX-License-Identifier: MIT
"""The X server goes (a logout, a crash), whatever the program is doing: it ends with one line."""

import os
import subprocess
import unittest
from unittest import mock

from support import main
from support.comparing import dimmed
from support.desktop import Box, Pointer, screenshot, windows_titled
from support.program import (POPUP_TITLE, Program, activate_action, is_on_bus,
                             wait_until_launched)
from support.slow import nonsense, reading_time
from support.waiting import holds_for, wait_until

PAGE = Box(20, 20, 760, 560)
TEXT = "Still to be seen"


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
    def assert_ends_in_order(self, bring, settings=None):
        """Where `bring(server, program)` has brought the program."""
        with Server() as server, mock.patch.dict(os.environ, DISPLAY=server.name):
            program = Program(settings or {})
            program.start()
            self.addCleanup(program.process.kill)
            wait_until_launched()
            bring(server, program)
            # While something is drawn, Qt adds lines of what it was about to do.
            wait_until("the screen at rest", self.is_at_rest)
            server.die()
            self.assertEqual(program.wait_for_end(), 1, program.log)
            self.assertEqual(len(program.log), 1, program.log)
            self.assertIn("X11 connection broke", program.log[0])
            wait_until("the name's release", lambda: not is_on_bus())

    @staticmethod
    def is_at_rest():
        before = screenshot()
        try:
            holds_for("at rest", lambda: (screenshot() == before).all(), 0.3)
        except AssertionError:
            return False
        return True

    @staticmethod
    def bring_window(action):
        def bring(server, _program):
            before = server.windows()
            activate_action(action)
            wait_until("the window", lambda: server.windows() > before)
        return bring

    @staticmethod
    def looks_like(grey, inset=1):
        """Whether the page's corners do, so many pixels inside of it."""
        corners = PAGE.of(screenshot())
        return all((abs(corners[at, at] - grey) <= 2).all() for at in (inset, -1 - inset))

    def dim(self, text, pixel_size):
        """Above a page with the text, which goes with the server."""
        page = subprocess.Popen(
            [os.environ["VELLORA_TEXT_PAGE"], "--pixel-size", str(pixel_size),
             "--place", ",".join(str(side) for side in PAGE), text],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(page.wait)
        self.addCleanup(page.kill)
        wait_until("the page", lambda: self.looks_like(255))
        activate_action("capture")
        wait_until("the dim", lambda: self.looks_like(dimmed(255)))

    def capture(self, text, pixel_size):
        self.dim(text, pixel_size)
        Pointer.drag((PAGE.x, PAGE.y), (PAGE.right, PAGE.bottom))
        wait_until("the overlay's end", lambda: self.looks_like(255))

    def test_idle(self):
        self.assert_ends_in_order(lambda _server, _program: None)

    def test_dimmed(self):
        self.assert_ends_in_order(self.bring_window("capture"))

    def test_dragging(self):
        def drag(_server, _program):
            self.dim(TEXT, 36)
            Pointer.drag((PAGE.x, PAGE.y), (PAGE.right, PAGE.bottom), release=False)
            # It is clear within its border.
            wait_until("the selection", lambda: self.looks_like(255, inset=9))

        self.assert_ends_in_order(drag)

    def test_settings(self):
        self.assert_ends_in_order(self.bring_window("settings"))

    def test_reading(self):
        def read(_server, program):
            self.capture(nonsense(), 12)
            # What was taken until now may have loaded models only.
            taken = reading_time(program)
            wait_until("the recognition", lambda: reading_time(program) > taken + 0.3)

        self.assert_ends_in_order(read)

    def test_result(self):
        def show_result(_server, _program):
            self.capture(TEXT, 36)
            wait_until("the result window", lambda: windows_titled(POPUP_TITLE))

        self.assert_ends_in_order(show_result, {"outputMode": "popup"})


if __name__ == "__main__":
    main()
