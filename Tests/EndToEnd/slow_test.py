# SPDX-License-Identifier: MIT
"""A picture that takes long to read: it holds up neither the end of the program nor another one."""

import signal
import unittest

from support import main
from support.desktop import Box, Clipboard, points
from support.page import Page
from support.program import Program, activate_action, is_on_bus
from support.slow import reading_time, slow_page
from support.waiting import holds_for, wait_until

CLIPBOARD = {"outputMode": "clipboard"}
TEXT = "Short and quick"
QUICK_BOX = Box(points(60), points(600), points(520), points(100))


class SlowTest(unittest.TestCase):
    def begin_slow_capture(self, program, page):
        Clipboard.put("before")
        program.capture(page.box)
        before = reading_time(program)
        wait_until("the recognition", lambda: reading_time(program) > before + 0.3)
        self.assertEqual(Clipboard.text(), "before")

    def assert_ends(self, ask):
        with slow_page() as page:
            program = Program(CLIPBOARD)
            program.start()
            self.addCleanup(program.process.kill)
            self.begin_slow_capture(program, page)
            ask(program)
            # Before it has ended, the next start is the first.
            wait_until("the free name on the session bus", lambda: not is_on_bus())
            with Program(CLIPBOARD) as second:
                wait_until("the second start on the session bus", is_on_bus)
                self.assertTrue(second.is_running())
                program.wait_for_end()
                program.check()
            self.assertEqual(Clipboard.text(), "before")

    def test_termination(self):
        self.assert_ends(lambda program: program.process.send_signal(signal.SIGTERM))

    def test_quit(self):
        self.assert_ends(lambda _: activate_action("quit"))

    def test_newer_capture(self):
        with slow_page() as slow, Page(TEXT, QUICK_BOX) as quick, \
                Program(CLIPBOARD) as program:
            self.begin_slow_capture(program, slow)
            program.capture(quick.box)
            wait_until("the newer text", lambda: Clipboard.text() == TEXT, 60)

            def is_idle():
                before = reading_time(program)
                try:
                    holds_for("idle", lambda: reading_time(program) <= before, 0.3)
                except AssertionError:
                    return False
                return True

            # Whatever the older one might still bring, it has brought by then.
            wait_until("the end of all reading", is_idle, 60)
            self.assertEqual(Clipboard.text(), TEXT)


if __name__ == "__main__":
    main()
