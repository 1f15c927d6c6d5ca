# SPDX-License-Identifier: MIT
"""Signals that end the program, at random moments: how soon it is gone, and what stays."""

import os
import select
import signal
import socket
import statistics
import time
from pathlib import Path

from support import comparing, desktop, program
from support.slow import slow_page

from . import states
from .rounds import SETTINGS, Rounds

SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
# What it may take from the signal to the end of the process. Where others have the processors, the
# time that the main thread waits for one is not counted.
MOST_MILLISECONDS = 300
LATEST = 0.3  # seconds after the start, or after a state is reached


def starting(_run, _page):
    pass


def unanswered(_run, _page):
    """Starting where the session bus takes it in and says nothing."""


def waited(pid):
    """Milliseconds that the main thread was ready to run and had no processor."""
    return int(Path(f"/proc/{pid}/schedstat").read_text().split()[1]) / 1e6


class SilentBus:
    def __init__(self):
        path = Path(os.environ["XDG_RUNTIME_DIR"]) / "silent-bus"
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.bind(str(path))
        # Whoever connects waits in this queue for good.
        self._socket.listen(1000)
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={path}"}


class Signals(Rounds):
    def run(self):
        times, own = {}, []
        kinds = (starting, unanswered, *states.STATES)
        self.silent_bus = SilentBus()
        with slow_page() as page:
            for self.number in range(1, self.options.signals + 1):
                state = kinds[self.number % len(kinds)]
                try:
                    taken, waiting = self.end_once(state, page)
                    times.setdefault(state.__name__, []).append(taken)
                    own.append(taken - waiting)
                except AssertionError as problem:
                    self.problem(f"{state.__name__}: {problem}")
                    states.leave(state)
        every = sum(times.values(), [])
        print(f"\n{self.number} signals in {self.minutes():.0f} minutes (seed {self.options.seed}); "
              "milliseconds until the process was gone:")
        for name, values in [*times.items(), ("all", every)]:
            print(f"{name:10} {len(values):4} times, median {statistics.median(values):4.0f}, "
                  f"slowest {max(values):4.0f}")
        print(f"without waiting for a processor: median {statistics.median(own):.0f}, "
              f"slowest {max(own):.0f}")
        return self.verdict()

    def end_once(self, state, page):
        desktop.Clipboard.put("before")
        before = comparing.settled_screenshot()
        run = program.Program(
            SETTINGS, self.silent_bus.environment if state is unanswered else None)
        stored = program.settings_file().read_bytes()
        run.start()
        try:
            if state not in (starting, unanswered):
                run.status_item()
                state(run, page)
            time.sleep(self.random.uniform(0, LATEST))
            number = self.random.choice(SIGNALS)
            taken, waiting = self.time_to_end(run, number)
            if taken - waiting > MOST_MILLISECONDS:
                self.problem(f"{state.__name__}: {taken:.0f} ms after {number.name}, "
                             f"{waiting:.0f} of them without a processor")
            status = run.wait_for_end()
            # Before it can handle any, a signal ends it as it ends every process.
            if status != 0 and not (state in (starting, unanswered) and status == -number):
                self.problem(f"{state.__name__}: status {status} after {number.name}")
            if run.log:
                self.problem(f"{state.__name__}: logged {run.log}")
        finally:
            run.process.kill()
        if state is states.dragging:
            desktop.Pointer.release()
        self.until("the free name on the session bus", lambda: not program.is_on_bus())
        self.until("the screens of before", lambda: comparing.is_unchanged(before))
        if desktop.Clipboard.text() != "before":
            self.problem(f"{state.__name__}: another text on the clipboard")
        if program.settings_file().read_bytes() != stored:
            self.problem(f"{state.__name__}: other settings")
        return taken, waiting

    @staticmethod
    def time_to_end(run, number):
        """In milliseconds, told by the kernel; and for how much of it the processors were others'."""
        pid = run.process.pid
        end = os.pidfd_open(pid)
        try:
            waited_before, began = waited(pid), time.perf_counter()
            run.process.send_signal(number)
            assert select.select([end], [], [], 60)[0], "60 s were not enough"
            # Nobody has asked for its status yet, so that the kernel still knows it.
            return (time.perf_counter() - began) * 1000, waited(pid) - waited_before
        finally:
            os.close(end)
