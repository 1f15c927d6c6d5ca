# SPDX-License-Identifier: MIT
"""What a desktop puts behind xdg-desktop-portal's GlobalShortcuts, for sway, which has nothing of
that kind: sway binds the keys, and this process tells of their presses.

    portal_backend.py allow|deny|other

gives the keys asked for, none or others, as a user may have chosen them; it says "ready" once the portal can find it, then each thing that it was asked for.
"""

import json
import subprocess
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.freedesktop.impl.portal.desktop.vellora_test"
INTERFACE = "org.freedesktop.impl.portal.GlobalShortcuts"
SESSION = "org.freedesktop.impl.portal.Session"
MODIFIERS = {"LOGO": "Mod4", "SHIFT": "Shift", "CTRL": "Ctrl", "ALT": "Mod1"}
GRANTED, DENIED = 0, 1
OTHER_KEYS, OTHER_WORDS = "CTRL+SHIFT+d", "Press <Control><Shift>d"


def say(*words):
    print(*words, flush=True)


def sway(command):
    subprocess.run(["swaymsg", command], stdout=subprocess.DEVNULL, check=True)


class Session(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, path)
        self.keys = None

    @dbus.service.method(SESSION)
    def Close(self):
        if self.keys:
            sway(f"unbindsym {self.keys}")
        self.remove_from_connection()
        say("closed")


class Backend(dbus.service.Object):
    def __init__(self, name, answer):
        super().__init__(name, "/org/freedesktop/portal/desktop")
        self._bus, self._answer, self._sessions = name.get_bus(), answer, {}

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, _interface, _name):
        return dbus.UInt32(1)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, _interface):
        return {"version": dbus.UInt32(1)}

    @dbus.service.method(INTERFACE, in_signature="oosa{sv}", out_signature="ua{sv}")
    def CreateSession(self, _request, session, _application, _options):
        self._sessions[session] = Session(self._bus, session)
        return GRANTED, {}

    @dbus.service.method(INTERFACE, in_signature="ooa(sa{sv})sa{sv}", out_signature="ua{sv}")
    def BindShortcuts(self, _request, session, shortcuts, _window, _options):
        (name, properties), = shortcuts
        say("asked", name, properties["preferred_trigger"])
        if self._answer == "deny":
            return DENIED, {}
        trigger = description = properties["preferred_trigger"]
        if self._answer == "other":
            trigger, description = OTHER_KEYS, OTHER_WORDS
        keys = "+".join(MODIFIERS.get(part, part) for part in trigger.split("+"))
        sway(f"bindsym {keys} nop {session} {name}")
        self._sessions[session].keys = keys
        say("bound", trigger)
        given = dbus.Dictionary({"description": properties["description"],
                                 "trigger_description": description},
                                signature="sv")
        return GRANTED, {"shortcuts": dbus.Array([(name, given)], signature="(sa{sv})")}

    @dbus.service.signal(INTERFACE, signature="osta{sv}")
    def Activated(self, session, shortcut, time, options):
        pass

    def tell(self, stream, _condition):
        """A line of sway's, for each press of a bound key."""
        words = json.loads(stream.readline())["binding"]["command"].split()
        if len(words) == 3 and words[1] in self._sessions:
            _, session, name = words
            self.Activated(dbus.ObjectPath(session), name, dbus.UInt64(0),
                           dbus.Dictionary({}, signature="sv"))
        return True


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    name = dbus.service.BusName(NAME, dbus.SessionBus())
    backend = Backend(name, sys.argv[1])
    with subprocess.Popen(["swaymsg", "-r", "-m", "-t", "subscribe", '["binding"]'], text=True,
                          stdout=subprocess.PIPE) as events:
        GLib.io_add_watch(events.stdout, GLib.IO_IN, backend.tell)
        say("ready")
        try:
            GLib.MainLoop().run()
        finally:
            events.terminate()


if __name__ == "__main__":
    main()
