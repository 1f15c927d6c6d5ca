# SPDX-License-Identifier: MIT
"""A sway desktop: seen by grim, touched by a virtual pointer and keyboard, asked by swaymsg."""

import io
import json
import subprocess

import numpy
from PIL import Image

from . import wayland
from .geometry import SCALE, Box, points, tool
from .wayland import Clipboard, Input


def page_unit():
    """What the text page takes its place and size in."""
    return SCALE


def screenshot():
    """What all screens show, read by grim: rows of (r, g, b)."""
    done = subprocess.run(["grim", "-t", "ppm", "-"], capture_output=True, timeout=60, check=True)
    picture = Image.open(io.BytesIO(done.stdout)).convert("RGB")
    return numpy.asarray(picture).astype(numpy.int16)


def pixel(x, y):
    """(r, g, b) of one place, in less time than a screenshot takes."""
    place = f"{round(x / SCALE)},{round(y / SCALE)} 1x1"
    done = subprocess.run(["grim", "-t", "ppm", "-g", place, "-"], capture_output=True, timeout=60,
                          check=True)
    return tuple(done.stdout[-3:])


# Sway takes places in pixels of the whole desktop.
_input = Input(1)
key = _input.key


def float_pages():
    """Lets text pages have the size that they want; to be told again after a reload."""
    for rule in ("floating enable", "border none"):
        tool("swaymsg", f"for_window [title=\"^Text page$\"] {rule}")


float_pages()


class Device:
    """Real input events of the pointer."""

    move = _input.move
    press = _input.press
    release = _input.release
    click_here = _input.click


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


def _content(node):
    outer, inner = node["rect"], node["window_rect"]
    return _box(outer["x"] + inner["x"], outer["y"] + inner["y"], inner["width"],
                inner["height"])


def window_box(window):
    """Where the window's content is."""
    return _content(_window(window))


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
    return next((_content(each) for each in _windows() if each["pid"] == process), None)


def popups():
    """Sway tells nothing of menus and tool tips."""
    return []


def find_tray_icon():
    return wayland.find_tray_icon(screenshot)


def has_tray_icon():
    return wayland.has_tray_icon(screenshot)


__all__ = ["Clipboard", "Device", "activate", "active_window", "command",
           "find_tray_icon", "float_pages", "frame_box", "has_tray_icon", "key", "listed_windows",
           "page_box", "page_unit", "place_page", "popups", "screenshot", "title_of", "window_box",
           "windows_titled"]
