# SPDX-License-Identifier: MIT
"""A desktop without any place for a status item: the program says how to use it all the same, and
what its marks would say goes out as notifications."""

import subprocess
import unittest

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

from support import desktop, main
from support.artifacts import keep
from support.comparing import (is_unchanged, settled_screenshot, wait_until_dimmed,
                               wait_until_unchanged)
from support.desktop import Pointer, key
from support.page import Page
from support.program import Program, activate_action, binary, is_on_bus, settings_file
from support.waiting import wait_until
from support.wayland_tests import TEXT

IS_GNOME = desktop.NAME.startswith("gnome")
SETTINGS = "Vellora Settings"
# The program waits ten seconds for a panel.
PATIENCE = 60
FIRST_START = {"outputMode": "clipboard", "missingStatusItemDismissed": "false"}


def settings():
    return desktop.windows_titled(SETTINGS)


class Service(dbus.service.Object):
    """The notifications of a desktop; what was posted, in order."""

    def __init__(self, bus):
        self.posted = []
        self._name = dbus.service.BusName("org.freedesktop.Notifications", bus,
                                          replace_existing=True, do_not_queue=True)
        super().__init__(self._name, "/org/freedesktop/Notifications")

    @dbus.service.method("org.freedesktop.Notifications", in_signature="", out_signature="as")
    def GetCapabilities(self):
        return ["body"]

    @dbus.service.method("org.freedesktop.Notifications", in_signature="susssasa{sv}i",
                         out_signature="u")
    def Notify(self, _name, _replaced, _icon, title, body, _actions, hints, _limit):
        self.posted.append((str(title), str(body), bool(hints.get("transient"))))
        return len(self.posted)


class Notifications:
    """What the program posts, told by the shell on GNOME, elsewhere by a service of our own."""

    def __init__(self):
        if IS_GNOME:
            from support.gnome import ask
            self._ask = ask
            # Of a whole session; it hands on to the shell what it gets.
            bus = dbus.SessionBus()
            bus.start_service_by_name("org.gnome.Shell.Notifications")
            wait_until("the shell's notifications",
                       lambda: bus.name_has_owner("org.freedesktop.Notifications"))
            ask("""new imports.gi.Gio.Settings({schema_id: "org.gnome.desktop.notifications"})
                .set_boolean("show-banners", true)""")
        else:
            DBusGMainLoop(set_as_default=True)
            self._service = Service(dbus.SessionBus(private=True))

    def seen(self):
        """Title, text and whether it goes by itself, of the last one."""
        if IS_GNOME:
            told = self._ask("""(() => {
                const tray = Main.messageTray;
                const n = tray._notification ||
                    tray.getSources().flatMap(source => source.notifications).pop();
                return n ? [n.title, n.bannerBodyText, n.isTransient] : null;
            })()""")
            return tuple(told) if told else None
        while GLib.MainContext.default().iteration(False):
            pass
        return self._service.posted[-1] if self._service.posted else None


    def dismiss(self):
        """Takes away what the shell shows above everything, the dim too, for as long as its user
        does nothing."""
        if IS_GNOME:
            self._ask("Main.messageTray.getSources().forEach(source => source.destroy())")
            wait_until("the banner's end", lambda: self._ask("!Main.messageTray._banner"))


class MissingItemTest(unittest.TestCase):
    def test_the_settings_say_how_to_capture(self):
        with Program(FIRST_START) as program:
            wait_until("the program on the session bus", is_on_bus)
            wait_until("the settings", settings, PATIENCE)
            settled_screenshot()
            keep("missing-item-settings")
            self.assertTrue(program.is_running())
            # A second start is what the window says it is, and beside the window.
            before = settled_screenshot()
            self.assertEqual(subprocess.run([binary()], timeout=60, check=False).returncode, 0)
            wait_until_dimmed(before)
            key("Escape")
            wait_until_unchanged("the overlay's end", before)
            self.assertIn("missingStatusItemDismissed=false", settings_file().read_text())

    @unittest.skipIf(IS_GNOME, "the shell's extension comes with the session")
    def test_panel_that_comes_later(self):
        with Program(FIRST_START):
            wait_until("the settings", settings, PATIENCE)
            told = settled_screenshot()
            panel = subprocess.Popen(["trayer", "--edge", "bottom", "--align", "right",
                                      "--widthtype", "request", "--height", "24"],
                                     stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            try:
                wait_until("the status item", desktop.find_tray_icon)
                wait_until("another text in the settings", lambda: not is_unchanged(told))
                settled_screenshot()
                keep("missing-item-comes")
            finally:
                panel.terminate()
                panel.wait()

    def test_marks_are_posted(self):
        notifications = Notifications()
        with Page(TEXT) as page, Program({"outputMode": "clipboard"},
                                         expected_log=["Vellora OCR: No text found"]):
            wait_until("the program on the session bus", is_on_bus)
            before = settled_screenshot()
            activate_action("capture")
            wait_until_dimmed(before)
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("word of the copy",
                       lambda: notifications.seen() == ("Vellora", "Copied", True))
            keep("missing-item-copied")
            notifications.dismiss()
            before = settled_screenshot()
            activate_action("capture")
            wait_until_dimmed(before)
            bottom = desktop.SCREENS[0].bottom
            Pointer.drag((20, bottom - 120), (200, bottom - 60))
            wait_until("word of the error",
                       lambda: notifications.seen() == ("Vellora", "No text found", True))
            keep("missing-item-error")
            notifications.dismiss()


if __name__ == "__main__":
    main()
