# SPDX-License-Identifier: MIT
"""What tests do alike on every Wayland desktop: pointer, keyboard, clipboard and bar."""

import atexit
import os
import subprocess

from .geometry import PANEL, SCREENS, Box, difference, points
from .waiting import wait_until

WHOLE = max(screen.right for screen in SCREENS), max(screen.bottom for screen in SCREENS)
BUTTONS = {1: 272, 2: 274, 3: 273}
KEYS = {"Escape": 1, "Return": 28, "a": 30, "d": 32, "k": 37, "o": 24, "4": 5, "space": 57, "Up": 103,
        "Down": 108}
MODIFIERS = {"ctrl": (29, 4), "shift": (42, 1), "alt": (56, 8), "super": (125, 64)}
BAR = 0xe0


class Input:
    """The devices, plugged in for as long as the test runs. `unit` is what the compositor counts
    places in, in pixels."""

    def __init__(self, unit):
        self._unit = unit
        self._process = subprocess.Popen([os.environ["VELLORA_WAYLAND_INPUT"]], text=True,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        atexit.register(self._unplug)
        self._await_done()

    def _unplug(self):
        self._process.stdin.close()
        self._process.wait(60)
        self._process.stdout.close()

    def _await_done(self):
        answer = self._process.stdout.readline().strip()
        assert answer == "done", f"wayland-input: {answer or 'ended'}"

    def _do(self, *words):
        self._process.stdin.write(" ".join(str(word) for word in words) + "\n")
        self._process.stdin.flush()
        self._await_done()

    def move(self, x, y):
        self._do("move", round(x / self._unit), round(y / self._unit), *WHOLE)

    def press(self, button=1):
        self._do("press", BUTTONS[button])

    def release(self, button=1):
        self._do("release", BUTTONS[button])

    def click(self, button=1):
        """At once: what a busy machine makes of a press and a release may be a long press, for which
        Plasma's panel opens a menu."""
        self._do("click", BUTTONS[button])

    def key(self, name):
        """A key with what is held with it, such as "super+shift+o"."""
        *held, last = name.split("+")
        mask = 0
        for modifier in held:
            code, bit = MODIFIERS[modifier]
            mask |= bit
            self._do("key", code, 1)
            self._do("modifiers", mask)
        self._do("key", KEYS[last], 1)
        self._do("key", KEYS[last], 0)
        for modifier in reversed(held):
            self._do("key", MODIFIERS[modifier][0], 0)
        if held:
            self._do("modifiers", 0)


class Clipboard:
    """The clipboard as another program meets it."""

    @staticmethod
    def text():
        """What wl-paste reads, or None when there is no text."""
        done = subprocess.run(["wl-paste", "--no-newline", "--type", "text/plain;charset=utf-8"],
                              capture_output=True, timeout=60, check=False)
        return done.stdout.decode() if done.returncode == 0 else None

    @staticmethod
    def put(text):
        # wl-copy stays behind to serve the text; it must not hold our pipes open.
        subprocess.run(["wl-copy", "--type", "text/plain;charset=utf-8"], input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60,
                       check=True)
        wait_until("our own text on the clipboard", lambda: Clipboard.text() == text)


def _tray():
    """Where the bar has icons."""
    screen = SCREENS[0]
    return Box(screen.right - points(60), screen.bottom - points(28), points(60), points(28))


def _inked(picture):
    return abs(picture - BAR).max(axis=2) > 60


def has_tray_icon(screenshot):
    """Whether there is anything where the bar has icons, or has been; without a bar there is not."""
    picture = _tray().of(screenshot())
    return PANEL != "none" and bool(_inked(picture).any())


def find_tray_icon(screenshot):
    """The one icon in the bar's tray, once it is drawn and has its place; else None."""
    bar = _tray()
    picture = bar.of(screenshot())
    if difference(picture, bar.of(screenshot())) or (picture[0, 0] != BAR).any():
        return None
    rows, columns = _inked(picture).nonzero()
    if len(rows) < 20:
        return None
    return Box(bar.x + int(columns.min()), bar.y + int(rows.min()),
               int(columns.max() - columns.min() + 1), int(rows.max() - rows.min() + 1))
