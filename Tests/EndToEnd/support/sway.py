# SPDX-License-Identifier: MIT
"""A sway desktop: seen by grim, touched by a virtual pointer and keyboard, asked by swaymsg."""

import atexit
import io
import json
import os
import subprocess

import numpy
from PIL import Image

from .geometry import SCALE, SCREENS, Box, difference, points, tool
from .waiting import wait_until

# What the text page takes its place and size in.
PAGE_UNIT = SCALE
WHOLE = max(screen.right for screen in SCREENS), max(screen.bottom for screen in SCREENS)
BUTTONS = {1: 272, 2: 274, 3: 273}
KEYS = {"Escape": 1, "Return": 28, "a": 30, "d": 32, "o": 24, "Up": 103, "Down": 108}
MODIFIERS = {"ctrl": (29, 4), "shift": (42, 1), "alt": (56, 8), "super": (125, 64)}
BAR = 0xe0


def screenshot():
    """What all screens show, read by grim: rows of (r, g, b)."""
    done = subprocess.run(["grim", "-t", "ppm", "-"], capture_output=True, timeout=20, check=True)
    picture = Image.open(io.BytesIO(done.stdout)).convert("RGB")
    return numpy.asarray(picture).astype(numpy.int16)


class _Input:
    """The devices, plugged in for as long as the test runs."""

    def __init__(self):
        self._process = subprocess.Popen([os.environ["VELLORA_WAYLAND_INPUT"]], text=True,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        atexit.register(self._unplug)
        self._await_done()

    def _unplug(self):
        self._process.stdin.close()
        self._process.wait(10)
        self._process.stdout.close()

    def _await_done(self):
        answer = self._process.stdout.readline().strip()
        assert answer == "done", f"wayland-input: {answer or 'ended'}"

    def __call__(self, *words):
        self._process.stdin.write(" ".join(str(word) for word in words) + "\n")
        self._process.stdin.flush()
        self._await_done()


_input = _Input()

def float_pages():
    """Lets text pages have the size that they want; to be told again after a reload."""
    for rule in ("floating enable", "border none"):
        tool("swaymsg", f"for_window [title=\"^Text page$\"] {rule}")


float_pages()


class Device:
    """Real input events of the pointer."""

    @staticmethod
    def move(x, y):
        _input("move", round(x), round(y), *WHOLE)

    @staticmethod
    def press(button=1):
        _input("press", BUTTONS[button])

    @staticmethod
    def release(button=1):
        _input("release", BUTTONS[button])


def key(name):
    """A key with what is held with it, such as "super+shift+o"."""
    *held, last = name.split("+")
    mask = 0
    for modifier in held:
        code, bit = MODIFIERS[modifier]
        mask |= bit
        _input("key", code, 1)
        _input("modifiers", mask)
    _input("key", KEYS[last], 1)
    _input("key", KEYS[last], 0)
    for modifier in reversed(held):
        _input("key", MODIFIERS[modifier][0], 0)
    if held:
        _input("modifiers", 0)


class Clipboard:
    """The clipboard as another program meets it."""

    @staticmethod
    def text():
        """What wl-paste reads, or None when there is no text."""
        done = subprocess.run(["wl-paste", "--no-newline", "--type", "text/plain;charset=utf-8"],
                              capture_output=True, timeout=20, check=False)
        return done.stdout.decode() if done.returncode == 0 else None

    @staticmethod
    def put(text):
        # wl-copy stays behind to serve the text; it must not hold our pipes open.
        subprocess.run(["wl-copy", "--type", "text/plain;charset=utf-8"], input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20,
                       check=True)
        wait_until("our own text on the clipboard", lambda: Clipboard.text() == text)


def command(text):
    tool("swaymsg", text)


def _windows():
    """All windows as sway describes them."""
    found, queue = [], [json.loads(tool("swaymsg", "-r", "-t", "get_tree"))]
    while queue:
        node = queue.pop()
        queue += node["nodes"] + node["floating_nodes"]
        if node.get("pid"):
            found.append(node)
    return found


def _window(number):
    return next(each for each in _windows() if each["id"] == number)


def _box(x, y, width, height):
    return Box(*(points(side) for side in (x, y, width, height)))


def activate(window):
    """Makes the window the active one, as a window switcher does."""
    command(f"[con_id={window}] focus")


def windows_titled(title):
    """The visible windows with exactly this title."""
    return [each["id"] for each in _windows() if each["name"] == title and each["visible"]]


def active_window():
    """The window that sway gave the keyboard, as a number."""
    return next((each["id"] for each in _windows() if each["focused"]), 0)


def title_of(window):
    return _window(window)["name"]


def window_box(window):
    """Where the window's content is."""
    node = _window(window)
    outer, inner = node["rect"], node["window_rect"]
    return _box(outer["x"] + inner["x"], outer["y"] + inner["y"], inner["width"],
                inner["height"])


def frame_box(window):
    """The window with its border and, above the rest, its title bar."""
    node = _window(window)
    outer, title = node["rect"], node["deco_rect"]["height"]
    return _box(outer["x"], outer["y"] - title, outer["width"], outer["height"] + title)


def listed_windows():
    """The windows that a task bar sees: {number: what is known of it}."""
    return {each["id"]: str(each["name"]) for each in _windows()}


def place_page(process, box):
    """Puts the text page of this process there, once it is; whether that worked."""
    x, y = round(box.x / SCALE), round(box.y / SCALE)
    pages = [each["id"] for each in _windows() if each["pid"] == process]
    for page in pages:
        # Not while it is just being shown.
        tool("swaymsg", f"[con_id={page}] move absolute position {x} px {y} px", check=False)
    return any((box.x, box.y) == page_box(process, None)[:2] for _ in pages)


def page_box(process, _said):
    """Where the text page of this process is."""
    return next((window_box(each["id"]) for each in _windows() if each["pid"] == process), None)


def find_tray_icon():
    """The one icon in the bar's tray, once it is drawn and has its place; else None."""
    screen = SCREENS[0]
    bar = Box(screen.right - points(60), screen.bottom - points(28), points(60), points(28))
    picture = bar.of(screenshot())
    if difference(picture, bar.of(screenshot())) or (picture[0, 0] != BAR).any():
        return None
    rows, columns = (abs(picture - BAR).max(axis=2) > 60).nonzero()
    if len(rows) < 20:
        return None
    return Box(bar.x + int(columns.min()), bar.y + int(rows.min()),
               int(columns.max() - columns.min() + 1), int(rows.max() - rows.min() + 1))
