# SPDX-License-Identifier: MIT
"""The program as an X11 program on Wayland desktops: KWin and GNOME give it by D-Bus what it needs;
sway nothing, and it says so, and what to do."""

import getpass
import os
import subprocess
import unittest
from pathlib import Path

from support import desktop, main
from support.comparing import wait_until_unchanged
from support.desktop import Clipboard, key, points
from support.page import Page
from support.pressing import assert_captures
from support.program import Program, wait_until_launched
from support.waiting import holds_for, wait_until
from support.wayland_tests import SHORTCUT_ON, TEXT

AS_X11_PROGRAM = {"WAYLAND_DISPLAY": None, "QT_QPA_PLATFORM": "xcb"}


def display_of_sway():
    """That of sway's Xwayland, which lets us in once it has started for that."""
    from support.sway import command
    file = Path(os.environ["SWAYSOCK"]).parent / "x11-display"
    command(f"exec xhost +si:localuser:{getpass.getuser()} && printenv DISPLAY > {file}")
    return wait_until("Xwayland's display",
                      lambda: file.read_text().strip() if file.exists() else None)


class XwaylandTest(unittest.TestCase):
    @unittest.skipIf(desktop.NAME == "sway", "sway shows X11 programs nothing")
    def test_capture_and_result_window(self):
        with Page(TEXT) as page, \
                Program({"outputMode": "both"}, environment=AS_X11_PROGRAM) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            popup = program.popup()
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            place = page.box.middle[0], page.box.bottom + points(8)
            wait_until("the result window in its place",
                       lambda: all(abs(is_at - should) <= 1 for is_at, should in
                                   zip(desktop.frame_box(popup), place)))
            key("Escape")
            wait_until_unchanged("the result window's end", before)

    @unittest.skipIf(desktop.NAME == "sway", "sway shows X11 programs nothing")
    def test_text_reaches_wayland_programs_again_and_again(self):
        both = f"{TEXT}\nand a third"
        with Page(both) as page, \
                Program({"outputMode": "clipboard"}, environment=AS_X11_PROGRAM) as program:
            first_line = page.box._replace(height=points(64))
            # Over what a Wayland program has there, and over what we have had there.
            Clipboard.put("before")
            for box, text in ((page.box, both), (first_line, TEXT), (page.box, both)):
                before = program.capture(box)
                wait_until(f"{text!r} on the clipboard", lambda: Clipboard.text() == text)
                wait_until_unchanged("the overlay's end", before)
            Clipboard.put("copied later")
            holds_for("the other program's text", lambda: Clipboard.text() == "copied later", 0.5)

    @unittest.skipIf(desktop.NAME == "sway", "sway shows X11 programs nothing")
    def test_shortcut(self):
        with Page(TEXT), Program(SHORTCUT_ON, AS_X11_PROGRAM):
            wait_until_launched()
            assert_captures("super+shift+o")
            assert_captures("super+shift+o")

    def assert_says_why_it_cannot_work(self, environment):
        done = subprocess.run([os.environ["VELLORA_BINARY"]], stdin=subprocess.DEVNULL,
                              env=environment, capture_output=True, text=True, timeout=60,
                              check=False)
        lines = done.stderr.strip().splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertRegex(lines[0], "^vellora: Vellora was started as an X11 program on a Wayland ")
        self.assertIn("lets no program see the screen", lines[0])
        self.assertIn("Start it with WAYLAND_DISPLAY set", lines[0])
        self.assertEqual(done.returncode, 1)

    @unittest.skipIf(desktop.NAME != "sway", "other desktops show the screen")
    def test_it_says_why_it_cannot_work(self):
        environment = {**os.environ, "DISPLAY": display_of_sway(), "QT_QPA_PLATFORM": "xcb"}
        self.assert_says_why_it_cannot_work(environment)
        del environment["WAYLAND_DISPLAY"]
        self.assert_says_why_it_cannot_work(environment)


if __name__ == "__main__":
    main()
