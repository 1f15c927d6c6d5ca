# SPDX-License-Identifier: MIT
"""The built program: its settings, its start and end, its log and its status item."""

import os
import re
import signal
import subprocess
import sys
import threading
from pathlib import Path

import support

from . import desktop
from .artifacts import keep
from .comparing import settled_screenshot, wait_until_dimmed
from .desktop import Pointer, points
from .waiting import TimedOut, wait_until

APPLICATION_ID = "org.vellora.Vellora"
OBJECT_PATH = "/org/vellora/Vellora"
POPUP_TITLE = "Vellora — Recognized Text"
LOG_PREFIX = "vellora: "

# Nothing to do with us: without a sound server there is no sound. Nor is the window that opens where
# there is no panel, but for the test of that.
QUIET = {"shutterSound": "false", "missingStatusItemDismissed": "true"}


def binary():
    return os.environ["VELLORA_BINARY"]


def settings_file():
    return Path(os.environ["XDG_CONFIG_HOME"]) / "vellora/vellora.ini"


def write_settings(values):
    """Replaces the stored settings. A value is written as it stands in the file."""
    file = settings_file()
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text("[General]\n" + "".join(f"{k}={v}\n" for k, v in values.items()))


class Program:
    """A run of the program. Use as a context manager: on leaving, it must still be running, quit
    when asked to, and have written no line that was not expected.

    `settings` is stored before the start; None leaves the file as it is.
    `environment` is added; a value of None removes the name.
    `expected_log` are patterns of the lines that are expected besides.
    `command` starts the program in another way.
    """

    _clicks = 0

    def __init__(self, settings=None, environment=None, expected_log=(), command=None):
        if settings is not None:
            write_settings({**QUIET, **settings})
        self.expected_log = list(expected_log)
        self.log = []
        self._command = command or [binary()]
        self._environment = dict(os.environ)
        for name, value in (environment or {}).items():
            if value is None:
                self._environment.pop(name, None)
            else:
                self._environment[name] = value
        self._item = None

    def __enter__(self):
        # A panel shows an icon for a while after its program has ended.
        wait_until("the end of an earlier program's icon", lambda: not desktop.has_tray_icon())
        self.start()
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            self._keep_evidence()
            self._end()
            print("the program's log:", *self.log, sep="\n", file=sys.stderr)
            return
        if self.is_running():
            self.quit()
        self.check()

    def start(self):
        self.process = subprocess.Popen(self._command, env=self._environment,
                                        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, errors="replace")
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.log.append(line.rstrip("\n"))

    def is_running(self):
        return self.process.poll() is None

    def wait_for_end(self, seconds=60):
        status = wait_until("the program's end", lambda: self.process.poll() is not None, seconds)
        self._reader.join(60)
        self.process.stdout.close()
        return self.process.returncode if status else None

    def quit(self):
        if self._environment.get("DBUS_SESSION_BUS_ADDRESS") == \
                os.environ["DBUS_SESSION_BUS_ADDRESS"]:
            wait_until("the program on the session bus", is_on_bus)
            activate_action("quit")
        else:
            self.process.send_signal(signal.SIGTERM)
        self.wait_for_end()

    @staticmethod
    def _keep_evidence():
        """What the screens show when a test fails, before anything is cleaned up."""
        file = keep(f"{support.current_test}@{desktop.NAME}-{os.getpid()}")
        print(f"screenshot: {file}", file=sys.stderr)

    def _end(self):
        if self.is_running():
            self.process.terminate()
            try:
                self.process.wait(60)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self._reader.join(60)
        self.process.stdout.close()

    def check(self, status=0):
        """The program has ended: with this status and nothing unexpected in its log."""
        assert self.process.returncode == status, \
            f"exit status {self.process.returncode}, not {status}:\n" + "\n".join(self.log)
        assert len(self.log) == len(self.expected_log) and all(
            re.fullmatch(LOG_PREFIX + pattern, line)
            for pattern, line in zip(self.expected_log, self.log)), \
            "unexpected log:\n" + "\n".join(self.log) \
            + "\nexpected:\n" + "\n".join(self.expected_log)

    def logged(self, pattern):
        """Waits for another line of the log and takes it as expected, if it matches."""
        self.expected_log.append(pattern)
        count = len(self.expected_log)
        wait_until(f"a log line like {pattern!r}", lambda: len(self.log) >= count)
        line = self.log[count - 1]
        assert re.fullmatch(LOG_PREFIX + pattern, line), f"{line!r} is not like {pattern!r}"

    # The status item

    def status_item(self):
        """Where the status item's icon is, found by looking at the panel's tray."""
        if self._item is None:
            self._item = wait_until("the status item", desktop.find_tray_icon)
        return self._item

    def find_status_item_again(self):
        """For a panel that has just appeared."""
        self._item = None
        return self.status_item()

    def click(self, button=1):
        """A click on the icon. The pointer must not stay when what it brought has come, or the
        panel shows its tool tip."""
        # Never twice in a row at one place: to GTK that is a double click, which waybar takes for
        # one click more.
        Program._clicks += 1
        x, y = self.status_item().middle
        Pointer.click(x + points(4) * (-1) ** Program._clicks, y, button)

    # The overlay

    def ask_for_capture(self):
        """A left click on the status item; GNOME Shell opens the menu for one."""
        if desktop.NAME.startswith("gnome"):
            activate_action("capture")
        else:
            self.click()

    def start_capture(self, before=None):
        """A left click on the status item; returns what the screens showed before. They show that
        already when it is given."""
        self.status_item()
        if before is None:
            before = settled_screenshot(0.2)
        self.ask_for_capture()
        try:
            wait_until_dimmed(before)
        except TimedOut as problem:
            raise TimedOut(f"{problem}; the item is at {desktop.find_tray_icon()}, clicked at "
                           f"{self._item}") from problem
        Pointer.rest()
        return before

    def capture(self, box, before=None):
        """A whole capture of this part of the screen; `before` is as in `start_capture`."""
        before = self.start_capture(before)
        Pointer.drag((box.x, box.y), (box.right, box.bottom))
        return before

    @staticmethod
    def popup():
        """The result window, once it is there and has the keyboard."""
        window = wait_until("the result window", lambda: desktop.windows_titled(POPUP_TITLE))[0]
        wait_until("the result window's focus", lambda: desktop.active_window() == int(window))
        return window


# The session bus

def is_on_bus():
    answer = desktop.tool("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                          "--object-path", "/org/freedesktop/DBus", "--method",
                          "org.freedesktop.DBus.NameHasOwner", APPLICATION_ID)
    return "true" in answer


def activate_action(action, token=None):
    """As the desktop's own menus do it, with the token of the click if there is one."""
    # The types are named: gdbus asks for them otherwise, and calls without them if a program that is
    # still starting does not answer within three seconds.
    data = "@a{sv} {}" if token is None else f"@a{{sv}} {{'activation-token': <'{token}'>}}"
    # It answers late when it is only started for that.
    desktop.tool("gdbus", "call", "--session", "--timeout", "50", "--dest", APPLICATION_ID,
                 "--object-path", OBJECT_PATH, "--method",
                 "org.freedesktop.Application.ActivateAction", action, "@av []", data)


def wait_until_launched():
    """Until the program has done what it had to by now."""
    wait_until("the program on the session bus", is_on_bus)
    # What it is asked is answered by its event loop: the second answer comes after the launch.
    for _ in range(2):
        activate_action("no-such-action")
