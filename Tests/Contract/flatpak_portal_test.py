# SPDX-License-Identifier: MIT
"""Updates through Flatpak's portal, played on the session bus."""

import unittest

from gi.repository import Gio, GLib

from support import main
from support.played_service import PlayedService, PrivateBus
from support.update_probe import UpdateProbe
from support.waiting import wait_until

NAME = "org.freedesktop.portal.Flatpak"
MONITOR = "/org/freedesktop/portal/Flatpak/update_monitor/1_1/x"
V = GLib.Variant
FIRST, SECOND = "1" * 64, "2" * 64
RUNNING, NOTHING_TO_DO, DONE, FAILED = range(4)


class FlatpakPortal(PlayedService):
    """Use as a context manager. `known` is told as soon as somebody listens."""

    def __init__(self, bus, known=None):
        super().__init__(bus, NAME)
        self._known, self.calls = known, []

    def answer(self, message, reply):
        method = message.get_member()
        self.calls.append((method, message.get_body()))
        if method == "CreateUpdateMonitor":
            reply.set_body(V("(o)", (MONITOR,)))
            if self._known:
                self.tell("UpdateAvailable", self._known)
        elif method == "Spawn":
            reply.set_body(V("(u)", (4711,)))

    def tell(self, name, values):
        signal = Gio.DBusMessage.new_signal(MONITOR, NAME + ".UpdateMonitor", name)
        signal.set_body(V("(a{sv})", (values,)))
        self.send(signal)

    def called(self, method):
        return [body for name, body in self.calls if name == method]


def commits(running=FIRST, local=FIRST, remote=SECOND):
    return {"running-commit": V("s", running), "local-commit": V("s", local),
            "remote-commit": V("s", remote)}


def progress(status, **values):
    return {"status": V("u", status), **{name: V("u", value) for name, value in values.items()}}


class FlatpakPortalTest(unittest.TestCase):
    def setUp(self):
        self.bus = self.enterContext(PrivateBus())

    def portal(self, known=None):
        return FlatpakPortal(self.bus, known)

    def probe(self):
        return UpdateProbe("flatpak", "org.vellora.Vellora",
                           environment={"DBUS_SESSION_BUS_ADDRESS": self.bus.address})

    def test_tells_of_an_update_and_installs_it(self):
        with self.portal() as portal, self.probe() as probe:
            probe.tell("start")
            self.assertTrue(probe.wait_for("started")["started"])
            wait_until("the monitor", lambda: portal.called("CreateUpdateMonitor"))
            self.assertEqual(probe.ask("look")["problem"], "not asked")
            portal.tell("UpdateAvailable", commits())
            probe.wait_for("changed")
            for look in ("look", "look-in-background"):
                result = probe.ask(look)
                self.assertEqual((result["result"], result["version"], result["notes"]),
                                 ("available", "", ""))
            probe.tell("install")
            wait_until("the update", lambda: portal.called("Update"))
            self.assertEqual(portal.called("Update")[0].unpack(), ("", {}))
            portal.tell("Progress", progress(RUNNING, n_ops=4, op=1, progress=50))
            self.assertEqual(probe.wait_for("progress"), {
                "progress": "downloading", "percentage": 37, "canCancel": False})
            portal.tell("Progress", progress(DONE, n_ops=4, op=4, progress=100))
            self.assertEqual(probe.wait_for("result"), {"result": "installed"})

    def test_knows_at_once_what_was_told_at_once(self):
        with self.portal(commits()), self.probe() as probe:
            self.assertEqual(probe.ask("look")["result"], "available")

    def test_installed_already(self):
        with self.portal(commits(local=SECOND)), self.probe() as probe:
            self.assertEqual(probe.ask("look"), {"result": "installed"})

    def test_without_the_portal(self):
        with self.probe() as probe:
            result = probe.ask("look")
            self.assertEqual((result["problem"], result["command"]),
                             ("no service", "flatpak update org.vellora.Vellora"))
            self.assertEqual(probe.ask("install")["problem"], "no service")
            # It may come later.
            with self.portal(commits()):
                self.assertEqual(probe.ask("look")["result"], "available")

    def test_failed_updates(self):
        for values, problem, details in (
                ({**progress(FAILED), "error": V("s", "x.y"), "error_message": V("s", "No space")},
                 "other", "No space"),
                ({**progress(FAILED), "error": V("s", "x.y")}, "other", "x.y"),
                (progress(NOTHING_TO_DO), "gone", ""), (progress(4711), "other", "")):
            with self.subTest(problem=problem, details=details), \
                    self.portal(commits()) as portal, self.probe() as probe:
                probe.ask("look")
                probe.tell("install")
                wait_until("the update", lambda portal=portal: portal.called("Update"))
                portal.tell("Progress", values)
                result = probe.wait_for("result")
                self.assertEqual((result["problem"], result["details"]), (problem, details))

    def test_garbage(self):
        with self.portal({"remote-commit": V("u", 1), "local-commit": V("as", [])}) as portal, \
                self.probe() as probe:
            probe.ask("look")
            probe.tell("install")
            wait_until("the update", lambda: portal.called("Update"))
            for values in ({}, {"status": V("s", "done")},
                           progress(RUNNING, n_ops=0, op=7, progress=1000),
                           progress(RUNNING, n_ops=1, op=4_000_000_000, progress=1000)):
                portal.tell("Progress", values)
            portal.tell("Progress", progress(DONE))
            self.assertEqual(probe.wait_for("result"), {"result": "installed"})

    def test_portal_that_goes(self):
        with self.portal(commits()) as portal, self.probe() as probe:
            probe.ask("look")
            probe.tell("install")
            wait_until("the update", lambda: portal.called("Update"))
            portal.end()
            self.assertEqual(probe.wait_for("result")["problem"], "service ended")

    def test_restarts_as_the_newest_version(self):
        with self.portal() as portal, self.probe() as probe:
            probe.tell("restart")
            wait_until("the successor", lambda: portal.called("Spawn"))
            folder, command, files, environment, flags, options = portal.called("Spawn")[0].unpack()
            self.assertEqual((bytes(folder), [bytes(each) for each in command]),
                             (b"/\0", [b"/app/bin/vellora\0", b"flatpak\0",
                                       b"org.vellora.Vellora\0"]))
            self.assertEqual((files, environment, flags, options), ({}, {}, 2, {}))


if __name__ == "__main__":
    main()
