# SPDX-License-Identifier: MIT
"""An X11 desktop, seen and touched through the server's own tools and its test extension."""

import os
import re
import subprocess

import numpy
from PIL import ImageGrab

from .geometry import SCREENS, Box, difference, points, tool
from .waiting import wait_until


def page_unit():
    """What the text page takes its place and size in."""
    return 1


def screenshot():
    """What all screens show, read from the X server by this process: rows of (r, g, b)."""
    picture = ImageGrab.grab(xdisplay=os.environ["DISPLAY"]).convert("RGB")
    return numpy.asarray(picture).astype(numpy.int16)


class Device:
    """Real input events of the pointer, through the server's test extension."""

    @staticmethod
    def move(x, y):
        tool("xdotool", "mousemove", str(round(x)), str(round(y)))

    @staticmethod
    def press(button=1):
        tool("xdotool", "mousedown", str(button))

    @staticmethod
    def release(button=1):
        tool("xdotool", "mouseup", str(button))

    @staticmethod
    def click_here(button=1):
        tool("xdotool", "click", str(button))


def key(name):
    tool("xdotool", "key", name)


class Clipboard:
    """The clipboard as another program meets it."""

    @staticmethod
    def text():
        """What xclip reads, or None when there is no text."""
        done = subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True,
                              timeout=60, check=False)
        return done.stdout.decode() if done.returncode == 0 else None

    @staticmethod
    def put(text):
        # xclip stays behind to serve the text; it must not hold our pipes open.
        subprocess.run(["xclip", "-selection", "clipboard", "-i"], input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60,
                       check=True)
        wait_until("our own text on the clipboard", lambda: Clipboard.text() == text)


def activate(window):
    """Makes the window the active one, as a window switcher does."""
    tool("xdotool", "windowactivate", window)


def windows_titled(title):
    """The visible windows with exactly this title."""
    found = tool("xdotool", "search", "--onlyvisible", "--name", re.escape(title), check=False)
    return [window for window in found.split() if title_of(window) == title]


def active_window():
    """The window that the window manager gave the keyboard, as a number."""
    found = re.search(r"0x[0-9a-f]+", tool("xprop", "-root", "_NET_ACTIVE_WINDOW"))
    return int(found[0], 16) if found else 0


def title_of(window):
    """The title that is in the window's title bar, and in a task bar."""
    text = tool("xprop", "-id", window, "-notype", "_NET_WM_NAME", check=False)
    return text.partition('= "')[2].rstrip().removesuffix('"')


def _trays():
    """The windows that hold the icons."""
    # A window may go while the tree is read; the next look will tell.
    tree = tool("xwininfo", "-root", "-tree", check=False)
    trays = [Box(int(x), int(y), int(width), int(height)) for width, height, x, y in re.findall(
        r'"(?:Wrapper-2.0|trayer)"\) +(\d+)x(\d+)\S+ +\+(-?\d+)\+(-?\d+)', tree)]
    # The tool tips of the panel are windows of the same class.
    return [tray for tray in trays if min(tray.width, tray.height) >= 16
            and tray.y >= SCREENS[0].bottom - points(30)]


def find_tray_icon():
    """The one icon in the panel's tray, once it is drawn and has its place; else None."""
    trays = _trays()
    if len(trays) != 1:
        return None
    picture = trays[0].of(screenshot())
    # While an icon comes or goes, the panel moves its parts.
    if difference(picture, trays[0].of(screenshot())) or _trays() != trays:
        return None
    # The tray is plain where the icon is not.
    rows, columns = (abs(picture - picture[0, -1]).max(axis=2) > 60).nonzero()
    if len(rows) < 20:
        return None
    icon = Box(trays[0].x + int(columns.min()), trays[0].y + int(rows.min()),
               int(columns.max() - columns.min() + 1), int(rows.max() - rows.min() + 1))
    # A compositor may still show the panel as narrow as it was without the icon, and the icon of a
    # program that has just ended may still stand beside the new one.
    is_one = min(icon.width, icon.height) >= points(8) and icon.width <= points(30)
    return icon if is_one else None


def has_tray_icon():
    return find_tray_icon() is not None


def popups():
    """Menus and tool tips are not told from other windows."""
    return []


def window_box(window):
    """Where the window's content is."""
    lines = tool("xwininfo", "-id", window)
    return Box(*(int(re.search(rf"{name}: +(-?\d+)", lines)[1])
                 for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")))


def frame_box(window):
    """The window with the border and title bar that the window manager gave it."""
    box = window_box(window)
    extents = re.findall(r"\d+", tool("xprop", "-id", window, "_NET_FRAME_EXTENTS",
                                      check=False).partition("=")[2])
    if len(extents) != 4:
        return box
    left, right, top, bottom = (int(side) for side in extents)
    return Box(box.x - left, box.y - top, box.width + left + right, box.height + top + bottom)


def listed_windows():
    """The windows that the window manager lists, as a task bar sees them: {id: its properties}.

    Those that ask not to be in a task bar are left out.
    """
    listed = re.findall(r"0x[0-9a-f]+", tool("xprop", "-root", "_NET_CLIENT_LIST"))
    properties = {window: tool("xprop", "-id", window, check=False) for window in listed}
    return {window: text for window, text in properties.items()
            if "_NET_WM_STATE_SKIP_TASKBAR" not in text
            and "_NET_WM_WINDOW_TYPE_DOCK" not in text
            and "_NET_WM_WINDOW_TYPE_DESKTOP" not in text}


def place_page(_process, _box):
    """The text page puts itself where it was asked to."""
    return True


def page_box(_process, said):
    """Where the text page is: where it says."""
    return said
