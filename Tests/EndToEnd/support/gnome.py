# SPDX-License-Identifier: MIT
"""A GNOME desktop: seen and asked through its shell in unsafe mode, touched through its own remote
desktop. Programs under test see nothing of that."""

import atexit
import json
import tempfile

import dbus
import numpy
from PIL import Image

from . import geometry
from .geometry import PANEL, SCALE, SCREENS, WALLPAPER, Box
from .waiting import wait_until
from .wayland import BUTTONS, KEYS, MODIFIERS

# The screens as they are made.
PIXELS = list(SCREENS)
REMOTE = "org.gnome.Mutter.RemoteDesktop"

_bus = dbus.SessionBus()


def page_unit():
    """What the text page takes its place and size in, in pixels."""
    return max(SCALE, _unit)


def _object(name, path, interface):
    return dbus.Interface(_bus.get_object(name, path, introspect=False), interface)


_shell = _object("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell")
_screenshots = _object("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot",
                       "org.gnome.Shell.Screenshot")
_permissions = _object("org.freedesktop.impl.portal.PermissionStore",
                       "/org/freedesktop/impl/portal/PermissionStore",
                       "org.freedesktop.impl.portal.PermissionStore")


def ask(script):
    """What the expression is, as the shell sees it."""
    is_done, answer = _shell.Eval(script, signature="s")
    assert is_done, f"GNOME Shell: {answer}"
    return json.loads(answer) if answer else None


# What the shell counts as one, in pixels of a picture: on a dense screen GNOME 48 counts points,
# and earlier ones pixels.
_unit = PIXELS[0].width / ask("Main.layoutManager.monitors[0].width")


def screenshot():
    """What all screens show: rows of (r, g, b)."""
    with tempfile.NamedTemporaryFile(suffix=".png") as file:
        is_taken, _ = _screenshots.Screenshot(False, False, file.name, signature="bbs")
        assert is_taken, "GNOME Shell took no picture"
        return numpy.asarray(Image.open(file.name).convert("RGB")).astype(numpy.int16)


class _Input:
    """The devices, plugged in for as long as the test runs."""

    def __init__(self):
        path = _object(REMOTE, "/org/gnome/Mutter/RemoteDesktop", REMOTE).CreateSession(
            signature="")
        self._session = _object(REMOTE, path, f"{REMOTE}.Session")
        self._session.Start(signature="")
        atexit.register(lambda: self._session.Stop(signature=""))
        # The devices are made with the first event. Programs hear of them some time after that, unless
        # they start later.
        self._key(MODIFIERS["shift"][0], True)
        self._key(MODIFIERS["shift"][0], False)
        # Where the pointer is, is known in the corner.
        self._step(-20000, -20000)
        wait_until("the pointer in the corner", lambda: self._place() == [0, 0])
        self.move(SCREENS[0].right - 5, 60)

    def _key(self, code, is_down):
        self._session.NotifyKeyboardKeycode(code, is_down, signature="ub")

    def _step(self, x, y):
        self._session.NotifyPointerMotionRelative(x, y, signature="dd")

    @staticmethod
    def _place():
        return ask("global.get_pointer().slice(0, 2)")

    def move(self, x, y):
        # By steps alone, which the shell takes larger on a dense screen that it counts in pixels.
        wanted = [round(x / _unit), round(y / _unit)]

        def has_come():
            place = self._place()
            if place == wanted:
                return True
            scale = ask(f"""global.display.get_monitor_scale(Main.layoutManager.monitors.findIndex(
                m => {place[0]} >= m.x && {place[0]} < m.x + m.width &&
                     {place[1]} >= m.y && {place[1]} < m.y + m.height))""")
            step = 1 if _unit > 1 else scale
            self._step((wanted[0] - place[0]) / step, (wanted[1] - place[1]) / step)
            wait_until(f"the pointer's move from {place} to {wanted}",
                       lambda: self._place() != place)
            return False

        wait_until("the pointer's place", has_come)

    def press(self, button=1):
        self._session.NotifyPointerButton(BUTTONS[button], True, signature="ib")

    def release(self, button=1):
        self._session.NotifyPointerButton(BUTTONS[button], False, signature="ib")

    def click(self, button=1):
        self.press(button)
        self.release(button)

    def key(self, name):
        """A key with what is held with it, such as "super+shift+o"."""
        *held, last = name.split("+")
        for modifier in held:
            self._key(MODIFIERS[modifier][0], True)
        self._key(KEYS[last], True)
        self._key(KEYS[last], False)
        for modifier in reversed(held):
            self._key(MODIFIERS[modifier][0], False)


_input = _Input()
key = _input.key


class Device:
    """Real input events of the pointer."""

    move = _input.move
    press = _input.press
    release = _input.release
    click_here = _input.click


class Clipboard:
    """The clipboard as the shell, another program, meets it: no other can without the keyboard."""

    @staticmethod
    def text():
        """What is pasted, or None when there is no text."""
        ask("""global.velloraPasted = undefined;
            imports.gi.St.Clipboard.get_default().get_text(
                imports.gi.St.ClipboardType.CLIPBOARD,
                (_, text) => { global.velloraPasted = text; }); 0""")
        wait_until("what is pasted", lambda: ask("global.velloraPasted !== undefined"))
        return ask("global.velloraPasted")

    @staticmethod
    def put(text):
        ask(f"""imports.gi.St.Clipboard.get_default().set_text(
            imports.gi.St.ClipboardType.CLIPBOARD, {json.dumps(text)}); 0""")
        wait_until("our own text on the clipboard", lambda: Clipboard.text() == text)


# Programs that the desktop did not start have no id.
_IDS = ("", "org.vellora.Vellora")


def set_permission(answer):
    """What the user once answered to the question for pictures of the screen; None for nothing."""
    if answer is None:
        try:
            _permissions.Delete("screenshot", "screenshot", signature="ss")
        except dbus.DBusException as error:
            assert "NotFound" in error.get_dbus_name(), error
        return
    for name in _IDS:
        _permissions.SetPermission("screenshot", True, "screenshot", name, [answer],
                                   signature="sbssas")


def stored_permission():
    """What is kept of all answers to that question: {id of a program: words}."""
    try:
        kept, _ = _permissions.Lookup("screenshot", "screenshot", signature="ss")
    except dbus.DBusException as error:
        assert "NotFound" in error.get_dbus_name(), error
        return {}
    return {str(name): [str(word) for word in words] for name, words in kept.items()}


def grabbed_keys():
    """How many the shell keeps for the settings daemon."""
    return ask("Main.shellDBusService._grabbedAccelerators.size")


def choose(entry):
    """What a click on the program's icon does in the shell's list of programs."""
    ask(f"""(() => {{
        imports.gi.Shell.AppSystem.get_default().lookup_app({json.dumps(entry)}).activate();
        return 0;
    }})()""")


def set_animations(are_wanted):
    """Whether the shell moves and fades what it shows, as it does for most people. Without a
    graphics card it inhibits that itself, once."""
    ask(f"""(() => {{
        const {{Gio, St}} = imports.gi;
        new Gio.Settings({{schema_id: "org.gnome.desktop.interface"}})
            .set_boolean("enable-animations", {json.dumps(are_wanted)});
        St.Settings.get().{"uninhibit" if are_wanted else "inhibit"}_animations();
    }})()""")
    wait_until("the animations or their end",
               lambda: ask("imports.gi.St.Settings.get().enable_animations") == are_wanted)


def set_scales(*scales, counts_points=False):
    """Gives each screen its scale, side by side. The shell counts their places and sizes in pixels,
    or in points; pictures have then as many pixels a point everywhere as the densest screen, and
    everything here is in pixels of such a picture."""
    global _unit
    ask("""new imports.gi.Gio.Settings({schema_id: "org.gnome.mutter"})
        .set_strv("experimental-features", ["scale-monitor-framebuffer"])""")
    displays = _object("org.gnome.Mutter.DisplayConfig", "/org/gnome/Mutter/DisplayConfig",
                       "org.gnome.Mutter.DisplayConfig")

    def state():
        serial, monitors, _, properties = displays.GetCurrentState(signature="")
        return (serial, monitors) if properties.get("supports-changing-layout-mode") else None

    serial, monitors = wait_until("the choice of counting", state)
    # A monitor is named first by its connector, "Meta-" and its number.
    connectors = sorted(str(names[0]) for names, _, _ in monitors)
    modes = {str(names[0]): next(str(mode[0]) for mode in offered if mode[6].get("is-current"))
             for names, offered, _ in monitors}
    _unit = max(scales) if counts_points else 1
    geometry.SCALE = _unit
    left, boxes, config = 0, [], []
    for size, scale, connector in zip(PIXELS, scales, connectors):
        each = scale if counts_points else 1
        width, height = size.width // each, size.height // each
        config.append((left, 0, float(scale), 0, left == 0,
                       [(connector, modes[connector], dbus.Dictionary({}, signature="sv"))]))
        boxes.append(Box(left, 0, width, height))
        left += width
    temporary = 1
    displays.ApplyMonitorsConfig(
        serial, temporary, config, {"layout-mode": dbus.UInt32(1 if counts_points else 2)},
        signature="uua(iiduba(ssa{sv}))a{sv}")
    wait_until("the scales", lambda: ask("""Main.layoutManager.monitors.map(
        m => [m.geometry_scale, m.x, m.y, m.width, m.height])""")
        == [[scale, *box] for scale, box in zip(scales, boxes)])
    SCREENS[:] = [in_pixels(box) for box in boxes]
    wait_until("the wallpaper", _is_ready)


def in_pixels(box):
    """What the shell counts, in pixels of a picture."""
    return Box(*(round(side * _unit) for side in box))


_WINDOWS = """(() => {
    const box = r => [r.x, r.y, r.width, r.height];
    return global.get_window_actors().map(a => a.meta_window).map(w => ({
        id: w.get_id(), title: w.title, owner: w.get_wm_class(), frame: box(w.get_frame_rect()),
        placed: w.get_compositor_private().visible, active: w.has_focus(), listed: !w.skip_taskbar}));
})()"""


def windows():
    return ask(_WINDOWS)


def _window(number):
    return next(each for each in windows() if each["id"] == number)


def _command(window, action):
    ask(f"""global.get_window_actors().map(a => a.meta_window)
        .filter(w => w.get_id() === {window}).forEach(w => {action}); 0""")


def activate(window):
    """Makes the window the active one, as a window switcher does."""
    _command(window, "w.activate(global.get_current_time())")


def resize(window, width, height):
    """As the user does at the window's corner."""
    _command(window, f"w.move_resize_frame(true, w.get_frame_rect().x, w.get_frame_rect().y, "
                     f"{width}, {height})")


def windows_titled(title):
    """The visible windows with exactly this title."""
    return [each["id"] for each in windows() if each["title"] == title]


def active_window():
    """The window that has the keyboard, as a number."""
    return next((each["id"] for each in windows() if each["active"]), 0)


def title_of(window):
    return _window(window)["title"]


def frame_box(window):
    """The window without its shadow."""
    return in_pixels(_window(window)["frame"])


# Windows draw their own frames; what is a frame is for themselves to know.
window_box = frame_box


def listed_windows():
    """The windows that a task bar shows: {number: title}."""
    return {each["id"]: each["title"] for each in windows() if each["listed"]}


def place_page(process, box):
    """Puts the text page there, once it is; whether that worked."""
    for window in windows_titled("Text page"):
        _command(window, f"w.move_frame(true, {round(box.x / _unit)}, {round(box.y / _unit)})")
    return page_box(process, None)[:2] == (box.x, box.y)


def page_box(_process, _said):
    """Where the text page is; there is one at a time."""
    # The shell gives a window its place when it first shows it, whatever it was told before.
    return next((in_pixels(each["frame"]) for each in windows()
                 if each["title"] == "Text page" and each["placed"]), None)


def tray_icons():
    """Where the shell has status items: x, y, width and height of each, without numbers as long as
    it has no place. One whose program has ended stays for half a second."""
    return ask("""(() => {
        const area = Main.panel.statusArea;
        return Object.keys(area).filter(name => name.startsWith("appindicator-"))
            .map(name => area[name].container).filter(item => item.mapped && item.width > 0)
            .map(item => [...item.get_transformed_position(), item.width, item.height]);
    })()""")


def has_tray_icon():
    return bool(tray_icons())


def popups():
    """The shell has no tool tips."""
    return []


def find_tray_icon():
    """Where the one status item is, once the shell has it; else None."""
    boxes = tray_icons()
    if len(boxes) != 1 or None in boxes[0]:
        return None
    return in_pixels(boxes[0])


def _is_ready():
    picture = screenshot()
    return all((picture[screen.bottom - 5, screen.x + 5] == WALLPAPER).all() for screen in SCREENS)


assert PANEL in ("none", "appindicator"), PANEL
set_permission("yes")
wait_until("the wallpaper", _is_ready)
