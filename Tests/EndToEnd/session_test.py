# SPDX-License-Identifier: MIT
"""The program's place in the session: one of it, reached over the session bus, ended in order."""

import os
import signal
import subprocess
import unittest
from pathlib import Path

from support import desktop, main
from support.comparing import (is_unchanged, settled_screenshot, stays_unchanged,
                               wait_until_dimmed, wait_until_unchanged)
from support.desktop import Clipboard, key
from support.page import Page
from support.program import APPLICATION_ID, Program, activate_action, binary, is_on_bus
from support.waiting import holds_for, wait_until

TEXT = "One of a kind"
CLIPBOARD = {"outputMode": "clipboard"}
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}


def entry_value(key):
    entry = Path(binary()).parents[1] / f"share/applications/{APPLICATION_ID}.desktop"
    return next(line.partition("=")[2] for line in entry.read_text().splitlines()
                if line.startswith(f"{key}="))


class SessionTest(unittest.TestCase):
    def assert_capture_began(self, before):
        wait_until_dimmed(before)
        key("Escape")
        wait_until_unchanged("the overlay's end", before)

    def test_second_start_captures(self):
        with Program({}) as program:
            program.status_item()
            before = settled_screenshot()
            second = subprocess.run([binary()], capture_output=True, text=True, timeout=60,
                                    check=False)
            self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
            self.assert_capture_began(before)
            self.assertTrue(program.is_running())

    def test_second_start_by_the_session_does_not_capture(self):
        with Program({}) as program:
            program.status_item()
            before = settled_screenshot()
            # At login, by the bus while another start takes its name, and to restore the session.
            for command in (["/usr/bin/env", "VELLORA_AUTOSTARTED=1", binary()],
                            ["/usr/bin/env", "VELLORA_ACTIVATED=1", binary()],
                            [binary(), "-session", "10d8f3_1700000000"]):
                second = subprocess.run(command, capture_output=True, text=True, timeout=60,
                                        check=False)
                self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
                stays_unchanged("without an overlay", before, 0.5)
            self.assertTrue(program.is_running())

    def test_actions(self):
        with Program({}) as program:
            program.status_item()
            before = settled_screenshot()
            activate_action("capture")
            self.assert_capture_began(before)
            activate_action("no-such-action")
            activate_action("capture")
            self.assert_capture_began(before)
            activate_action("quit")
            self.assertEqual(program.wait_for_end(), 0)
            wait_until("the name's release", lambda: not is_on_bus())

    def test_windows_of_actions(self):
        for action, title in (("settings", "Vellora Settings"),
                              ("check-for-updates", "Vellora Update")):
            with self.subTest(action=action), Program({}) as program:
                program.status_item()
                before = settled_screenshot()
                activate_action(action)
                window, = wait_until("the window", lambda: desktop.windows_titled(title))
                # By it docks tell whose window it is.
                self.assertIn(f'"{entry_value("StartupWMClass")}"',
                              desktop.tool("xprop", "-id", window, "WM_CLASS"))
                activate_action(action)
                holds_for("one window", lambda: desktop.windows_titled(title) == [window], 0.3)
                desktop.activate(window)
                wait_until("the window in front", lambda: desktop.active_window() == int(window))
                key("alt+F4")
                wait_until_unchanged("the window's end", before)
                self.assertTrue(program.is_running())

    def test_signals_end_it_in_order(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number), Program({}) as program:
                program.status_item()
                os.kill(program.process.pid, number)
                self.assertEqual(program.wait_for_end(), 0)
                wait_until("the name's release", lambda: not is_on_bus())

    def test_starts_again_after_a_crash(self):
        program = Program({})
        program.start()
        program.status_item()
        program.process.kill()
        program.wait_for_end()
        wait_until("the name's release", lambda: not is_on_bus())
        wait_until("the icon's end", lambda: not desktop.find_tray_icon())
        with Program({}) as another:
            before = another.start_capture()
            key("Escape")
            wait_until_unchanged("the overlay's end", before)

    @unittest.skipIf(desktop.PANEL != "trayer", "without a bus there is the XEmbed tray only")
    def test_without_a_bus(self):
        with Page(TEXT) as page, Program(CLIPBOARD, NO_BUS) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    def test_idle_program_stays_quiet(self):
        with Program({}) as program:
            program.status_item()
            before = settled_screenshot()
            # The updater starts 5 seconds after the program.
            holds_for("quiet", lambda: is_unchanged(before) and program.is_running()
                      and not program.log, 6)


if __name__ == "__main__":
    main()
