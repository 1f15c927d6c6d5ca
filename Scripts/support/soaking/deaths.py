# SPDX-License-Identifier: MIT
"""What the program stands on is killed and comes back: window manager, compositor and panel, one
after the other, each in any state of the program; and the session bus, which does not come back."""

import ctypes
import os
import re
import signal
import subprocess
from pathlib import Path

from support import comparing, desktop, program
from support.page import Page
from support.slow import slow_page
from support.waiting import wait_until
from xdisplay import XDisplay

from . import measures, states
from .rounds import SETTINGS, Rounds

PR_SET_PDEATHSIG = 1


def die_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def processes(name):
    """The living children of this desktop, or of us, with this name."""
    for entry in Path("/proc").iterdir():
        try:
            own, _, fields = (entry / "stat").read_text().partition(") ")
        except (OSError, NotADirectoryError):
            continue
        state, parent = fields.split()[:2]
        if own.partition("(")[2] == name and state != "Z" \
                and int(parent) in (os.getpid(), os.getppid()):
            yield int(entry.name)


class Victim:
    def __init__(self, name, is_back):
        self.name, self._is_back = name, is_back

    def kill(self):
        """Returns the command by which it was started."""
        number, = processes(self.name)
        command = Path(f"/proc/{number}/cmdline").read_text().split("\0")[:-1]
        os.kill(number, signal.SIGKILL)
        wait_until(f"the end of {self.name}", lambda: not list(processes(self.name)), 60)
        return command

    def start(self, command):
        subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                         stderr=subprocess.DEVNULL, preexec_fn=die_with_parent)
        wait_until(f"the new {self.name}", self._is_back, 60)


def is_managed():
    """The root window names the manager's own window, also when that is long gone."""
    named = re.search(r"0x[0-9a-f]+", desktop.tool("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
    return named and "Openbox" in desktop.tool("xprop", "-id", named[0], "_NET_WM_NAME",
                                               check=False)


def has_frame(window):
    tree = desktop.tool("xwininfo", "-id", window, "-tree", check=False)
    return re.search(r"Parent window id: 0x[0-9a-f]+ (?!\(the root window\))", tree)


class Bus:
    """A session bus for one run of the program."""

    def __enter__(self):
        reading, writing = os.pipe()
        self._process = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={writing}"],
            pass_fds=(writing,), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=die_with_parent)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            self.address = pipe.readline().strip()
        return self

    def __exit__(self, *_):
        self.die()

    def die(self):
        self._process.kill()
        self._process.wait()


class Deaths(Rounds):
    def run(self):
        display = XDisplay(os.environ["DISPLAY"])
        victims = {
            "window manager": Victim("openbox", is_managed),
            "compositor": Victim("picom", lambda: display.selection_owner("_NET_WM_CM_S0")),
            "panel": Victim("trayer", desktop.find_tray_icon),
        }
        with program.Program(SETTINGS) as run:
            run.status_item()
            process = measures.Measures(run.process.pid)
            idle, first = process.now(), None
            for turn in range(self.options.deaths):
                state = states.STATES[turn % len(states.STATES)]
                for what, victim in victims.items():
                    self.number += 1
                    try:
                        self.die_once(run, victim, state)
                    except AssertionError as problem:
                        self.problem(f"the {what} died while {state.__name__}: {problem}")
                        states.leave(state)
                if turn + 1 == len(states.STATES):
                    first = process.now()
            self.judge(process, idle, first or idle)
            self.expect_unread_pages(run)
        print(f"{self.options.deaths} deaths each of {', '.join(victims)} in "
              f"{self.minutes():.0f} minutes (seed {self.options.seed})", flush=True)
        for turn in range(self.options.deaths):
            self.number += 1
            state = states.STATES_WITHOUT_A_BUS[turn % len(states.STATES_WITHOUT_A_BUS)]
            try:
                self.bus_dies_once(state)
            except AssertionError as problem:
                self.problem(f"the bus died while {state.__name__}: {problem}")
                states.leave(state)
        print(f"{self.options.deaths} deaths of the session bus, {self.minutes():.0f} minutes in all")
        return self.verdict()

    def die_once(self, run, victim, state):
        with slow_page() as page:
            run.find_status_item_again()
            state(run, page)
            command = victim.kill()
            states.leave(state)
            victim.start(command)
        if state is states.settings:
            self.close_settings()
        run.find_status_item_again()
        self.assert_works(run)

    def bus_dies_once(self, state):
        with Bus() as bus, \
                program.Program(SETTINGS, {"DBUS_SESSION_BUS_ADDRESS": bus.address}) as run:
            run.status_item()
            with slow_page() as page:
                state(run, page)
                bus.die()
                states.leave(state)
            self.assert_works(run)
            self.expect_unread_pages(run)

    @staticmethod
    def expect_unread_pages(run):
        """Of the slow page nothing may be read when it is no longer superseded."""
        run.expected_log = [r"Vellora OCR: No text found" for line in run.log
                            if line.endswith("No text found")]

    def close_settings(self):
        # A manager that has just come back closes only what it has listed and taken over by then.
        for window in wait_until("the settings",
                                 lambda: desktop.windows_titled("Vellora Settings"), 60):
            self.until("the settings' frame", lambda: has_frame(window))
            desktop.tool(os.environ["VELLORA_CLOSE_WINDOW"], window)
        self.until("the settings' end", lambda: not desktop.windows_titled("Vellora Settings"))

    def assert_works(self, run):
        with Page(self.words) as page:
            desktop.Clipboard.put("before")
            before = run.capture(page.box)
            self.until("the text", lambda: desktop.Clipboard.text() == self.words)
            self.until("the screens of before", lambda: comparing.is_unchanged(before))
