# SPDX-License-Identifier: MIT
"""Panels that start after the program, go away and come back."""

import subprocess
import unittest

from support import desktop, main
from support.comparing import settled_screenshot, wait_until_unchanged
from support.desktop import difference, key, screenshot
from support.program import Program
from support.waiting import holds_for, wait_until

PANELS = {
    "trayer": ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
               "--height", "24", "--SetDockType", "true", "--SetPartialStrut", "true"],
    "xfce4": ["xfce4-panel", "--disable-wm-check"],
}


class Panel:
    def __init__(self, name):
        self._command = PANELS[name]

    def __enter__(self):
        self._process = subprocess.Popen(self._command, stdin=subprocess.DEVNULL,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(60)


class PanelTest(unittest.TestCase):
    @staticmethod
    def has_its_place(program):
        """A panel that starts lays itself out more than once."""
        place = program.find_status_item_again()
        settled_screenshot()
        return desktop.find_tray_icon() == place

    def assert_item_works(self, program):
        wait_until("the status item at its place", lambda: self.has_its_place(program))
        shown = program.start_capture()
        key("Escape")
        wait_until_unchanged("the overlay's end", shown)

    def test_program_starts_first(self):
        for name in PANELS:
            with self.subTest(panel=name), Program({}) as program:
                nothing = settled_screenshot()
                holds_for("without anything on the screen, as there is no panel",
                          lambda: program.is_running()
                          and difference(nothing, screenshot()) is None, 1)
                with Panel(name):
                    self.assert_item_works(program)
                wait_until("the panel's end", lambda: difference(nothing, screenshot()) is None)

    def test_panel_comes_back(self):
        for name in PANELS:
            with self.subTest(panel=name), Program({}) as program:
                nothing = settled_screenshot()
                for _ in range(3):
                    with Panel(name):
                        self.assert_item_works(program)
                    wait_until("the panel's end",
                               lambda: difference(nothing, screenshot()) is None)
                    self.assertTrue(program.is_running())


if __name__ == "__main__":
    main()
