# SPDX-License-Identifier: MIT
"""A KWin desktop on Wayland: seen through KWin's own screenshots, touched through its fake input,
asked by scripts that it runs."""

import json
import os
import tempfile
import uuid

import dbus
import dbus.service
import numpy
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

from . import plasma, wayland
from .geometry import PANEL, SCALE, SCREENS, WALLPAPER, Box, points
from .waiting import wait_until
from .wayland import BAR, Clipboard, Input

NAME = "org.vellora.Test"
PATH = "/org/vellora/Test"

_bus = dbus.SessionBus(mainloop=DBusGMainLoop())


def page_unit():
    """What the text page takes its place and size in."""
    return SCALE


def _kwin(path, interface):
    return dbus.Interface(_bus.get_object("org.kde.KWin", path, introspect=False), interface)


_screenshots = _kwin("/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2")


def _picture(capture, signature, *place):
    """What the method of ScreenShot2 takes of that place: rows of (r, g, b)."""
    reading, writing = os.pipe()
    with os.fdopen(reading, "rb") as pipe:
        try:
            told = capture(*place,
                           dbus.Dictionary({"native-resolution": True, "include-cursor": False},
                                           signature="sv"),
                           dbus.types.UnixFd(writing), signature=f"{signature}a{{sv}}h")
        finally:
            os.close(writing)
        # KWin writes once it has answered.
        data = pipe.read()
    height, stride = int(told["height"]), int(told["stride"])
    rows = numpy.frombuffer(data, numpy.uint8).reshape(height, stride // 4, 4)
    # Blue comes first in memory.
    return rows[:, :int(told["width"]), 2::-1].astype(numpy.int16)


def screenshot():
    """What all screens show: rows of (r, g, b)."""
    return _picture(_screenshots.CaptureWorkspace, "")


def pixel(x, y):
    """(r, g, b) of one place, in less time than a screenshot takes."""
    taken = _picture(_screenshots.CaptureArea, "iiuu", round(x / SCALE), round(y / SCALE), 1, 1)
    return tuple(int(part) for part in taken[0, 0])


_input = Input(SCALE)
key = _input.key


class Device:
    """Real input events of the pointer."""

    move = _input.move
    press = _input.press
    release = _input.release
    click_here = _input.click


class _Answers(dbus.service.Object):
    """Where scripts send what they found out."""

    def __init__(self):
        self._bus_name = dbus.service.BusName(NAME, _bus)
        super().__init__(_bus, PATH)
        self.texts = []

    @dbus.service.method(NAME, in_signature="s")
    def Answer(self, text):  # noqa: N802 (the name on the bus)
        self.texts.append(str(text))


_answers = _Answers()

# What KWin 6 has renamed.
_COMMON = f"""
function answer(value) {{
    callDBus("{NAME}", "{PATH}", "{NAME}", "Answer", JSON.stringify(value));
}}
function windows() {{
    return workspace.windowList ? workspace.windowList() : workspace.clientList();
}}
function active() {{
    return workspace.windowList ? workspace.activeWindow : workspace.activeClient;
}}
function activate(window) {{
    workspace[workspace.windowList ? "activeWindow" : "activeClient"] = window;
}}
"""


def _start_script(number):
    try:
        _kwin(f"/Scripting/Script{number}", "org.kde.kwin.Script").run()
    except dbus.DBusException as error:
        if error.get_dbus_name() != "org.freedesktop.DBus.Error.UnknownObject":
            raise
        # Before KWin 6.
        _kwin(f"/{number}", "org.kde.kwin.Script").run()


def run(script):
    """What the script answers with `answer(value)`, after KWin has run it."""
    scripting = _kwin("/Scripting", "org.kde.kwin.Scripting")
    _answers.texts.clear()
    with tempfile.NamedTemporaryFile("w", suffix=".js") as file:
        file.write(_COMMON + script)
        file.flush()
        number = scripting.loadScript(file.name, file.name, signature="ss")
        _start_script(number)
        context = GLib.MainContext.default()

        def has_answered():
            context.iteration(False)
            return _answers.texts

        try:
            return json.loads(wait_until("KWin's answer to a script", has_answered)[0])
        finally:
            scripting.unloadScript(file.name, signature="s")


_WINDOWS = """
const box = r => [r.x, r.y, r.width, r.height];
answer(windows().filter(c => c.normalWindow || c.dialog).map(c => ({
    id: c.internalId.toString(), title: c.caption, pid: c.pid, visible: !c.minimized,
    active: c === active(), listed: !c.skipTaskbar, frame: box(c.frameGeometry),
    content: box(c.bufferGeometry)})));
"""


def _windows():
    """All windows; each one's id as a number."""
    return [{**each, "id": uuid.UUID(each["id"]).int} for each in run(_WINDOWS)]


def _window(number):
    return next(each for each in _windows() if each["id"] == number)


def _box(sides):
    return Box(*(points(side) for side in sides))


def activate(window):
    """Makes the window the active one, as a window switcher does."""
    run(f"activate({_find(window)}); answer(true);")


def minimise(window):
    run(f"{_find(window)}.minimized = true; answer(true);")


def close(window):
    """As its title bar's button does."""
    run(f"{_find(window)}.closeWindow(); answer(true);")


def resize(window, width, height):
    """To a frame of that many pixels, at the place that it has."""
    run(f"""
        const window = {_find(window)};
        const r = window.frameGeometry;
        window.frameGeometry = {{x: r.x, y: r.y, width: {round(width / SCALE)},
                                 height: {round(height / SCALE)}}};
        answer(true);""")


def _find(window):
    return f"""windows().find(c => c.internalId.toString() === "{{{uuid.UUID(int=window)}}}")"""


def is_there(window):
    """Whether there is such a window, minimised ones too."""
    return any(each["id"] == window for each in _windows())


def windows_titled(title):
    """The visible windows with exactly this title."""
    return [each["id"] for each in _windows() if each["title"] == title and each["visible"]]


def active_window():
    """The window that KWin gave the keyboard, as a number."""
    return next((each["id"] for each in _windows() if each["active"]), 0)


def popups():
    """Where there are menus and tool tips, which go by themselves."""
    return [_box(sides) for sides in run("""
        answer(windows().filter(c => c.popupWindow || c.tooltip).map(c => {
            const r = c.frameGeometry;
            return [r.x, r.y, r.width, r.height];
        }));""")]


def title_of(window):
    return _window(window)["title"]


def window_box(window):
    """Where the window's content is."""
    return _box(_window(window)["content"])


def frame_box(window):
    """The window with its border and title bar."""
    return _box(_window(window)["frame"])


def listed_windows():
    """The windows that a task bar shows: {id: title}."""
    return {each["id"]: each["title"] for each in _windows() if each["listed"]}


def place_page(process, box):
    """Puts the text page of this process there, once it is; whether that worked."""
    x, y = round(box.x / SCALE), round(box.y / SCALE)
    return run(f"""
        const page = windows().find(c => c.pid === {process});
        if (page) {{
            const r = page.frameGeometry;
            page.frameGeometry = {{x: {x}, y: {y}, width: r.width, height: r.height}};
        }}
        answer(!!page && page.frameGeometry.x === {x} && page.frameGeometry.y === {y});""")


def page_box(process, _said):
    """Where the text page of this process is."""
    return next((_box(each["content"]) for each in _windows() if each["pid"] == process), None)


def find_tray_icon():
    if PANEL == "plasma":
        return plasma.find_tray_icon(screenshot)
    return wayland.find_tray_icon(screenshot)


def has_tray_icon():
    if PANEL == "plasma":
        return plasma.has_tray_icon(screenshot)
    return wayland.has_tray_icon(screenshot)


def _is_ready():
    picture = screenshot()
    left_below = picture[SCREENS[0].bottom - 5, 5]
    return all((picture[5, screen.x + 5] == WALLPAPER).all() for screen in SCREENS) \
        and (PANEL in ("none", "plasma") or (left_below == BAR).all())


wait_until("the wallpaper and the bar", _is_ready, 60)
if PANEL == "plasma":
    plasma.learn_tray(screenshot, lambda: Clipboard.put("the first text"))

__all__ = ["Clipboard", "Device", "activate", "active_window", "find_tray_icon",
           "frame_box", "has_tray_icon", "key", "listed_windows", "page_box", "page_unit",
           "place_page", "popups", "screenshot", "title_of", "window_box", "windows_titled"]
