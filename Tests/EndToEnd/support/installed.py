# SPDX-License-Identifier: MIT
"""The installed program, started by the desktop from its entry or by the session bus."""

import os
import signal
import subprocess
from pathlib import Path

import dbus

from . import desktop
from .program import (APPLICATION_ID, LOG_PREFIX, OBJECT_PATH, QUIET, Program, is_on_bus,
                      write_settings)
from .waiting import PATIENCE, wait_until

INSTALLED = Path(os.environ.get("VELLORA_INSTALLED", "/nonexistent"))
ENTRY = INSTALLED / f"share/applications/{APPLICATION_ID}.desktop"


def tell_bus():
    """What a session tells its bus, so that the programs which that starts find the display."""
    desktop.tool("dbus-update-activation-environment", "--all")


def launch():
    """Chooses the program in the desktop's menu."""
    if desktop.NAME == "gnome":
        from .gnome import choose
        choose(ENTRY.name)
        return
    launcher = ["kioclient", "exec"] if desktop.PANEL == "plasma" else ["gio", "launch"]
    # What it starts may inherit its streams.
    subprocess.run([*launcher, str(ENTRY)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   timeout=60, check=True)


def activate():
    """What the desktop asks a program that is chosen once more, or that it starts by that: this one
    call, where tools such as gdbus make others before it."""
    dbus.SessionBus().call_blocking(APPLICATION_ID, OBJECT_PATH, "org.freedesktop.Application",
                                    "Activate", "a{sv}", ({},), timeout=PATIENCE)


def launch_in(unit):
    """The same where systemd starts what the bus is asked for, in a unit. The bus of a private desktop
    does that itself, and is in that unit as long as it takes."""
    with unit.starting(process_id("org.freedesktop.DBus")) as keep:
        launch()
        wait_until("the program on the session bus", is_on_bus, 60)
        keep(process_id())


def process_id(name=APPLICATION_ID):
    answer = desktop.tool("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                          "--object-path", "/org/freedesktop/DBus", "--method",
                          "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
    return int(answer.strip("(), \n").split()[-1])


class InstalledProgram(Program):
    """A run that is no child of ours: `start` is what begins it. What it logs goes where the bus or
    the desktop puts it."""

    def __init__(self, settings, start):
        super().__init__()
        write_settings({**QUIET, **settings})
        self._begin = start

    def start(self):
        self._earlier = len(self._lines())
        self._begin()
        wait_until("the program on the session bus", is_on_bus, 60)
        self.process_id = process_id()

    def is_running(self):
        return is_on_bus()

    def wait_for_end(self, seconds=60):
        wait_until("the program's end", self._has_ended, seconds)

    def _has_ended(self):
        try:
            status = Path(f"/proc/{self.process_id}/stat").read_text()
        except OSError:
            return True
        # Ended, but whoever it was left to has not looked yet.
        return status.rpartition(")")[2].split()[0] == "Z"

    def _end(self):
        if is_on_bus():
            os.kill(process_id(), signal.SIGTERM)
            self.wait_for_end()

    @staticmethod
    def _lines():
        """What stands in the bus's log, where those that the bus starts write to."""
        log = Path(os.environ["VELLORA_DESKTOP_LOGS"]) / "dbus-daemon.log"
        return [line for line in log.read_text(errors="replace").splitlines()
                if line.startswith(LOG_PREFIX) or "Sanitizer" in line]

    def logged(self, pattern):
        count = self._earlier + len(self.expected_log) + 1
        wait_until(f"a log line like {pattern!r}", lambda: len(self._lines()) >= count)
        self.log = self._lines()[self._earlier:]
        super().logged(pattern)

    def check(self, status=0):
        """It left nothing there that was not expected."""
        lines = self._lines()[self._earlier + len(self.expected_log):]
        assert not lines, "unexpected log:\n" + "\n".join(lines)
