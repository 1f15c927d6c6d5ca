# SPDX-License-Identifier: MIT
"""A PackageKit that does what the real one never should.

`answers` maps a method of a transaction to a list of signals, each a name and a GLib.Variant, sent
one after the other. A method that is not there is answered with success; with None, by silence.
"""

from gi.repository import Gio, GLib

from .played_service import PlayedService

NAME = "org.freedesktop.PackageKit"
PATH = "/org/freedesktop/PackageKit"
TRANSACTION = NAME + ".Transaction"
PROPERTIES = "org.freedesktop.DBus.Properties"


def finished(exit_code=1):
    return "Finished", GLib.Variant("(uu)", (exit_code, 1))


def package(info, package_id):
    return "Package", GLib.Variant("(uss)", (info, package_id, "a summary"))


def properties(**values):
    return "PropertiesChanged", GLib.Variant("(sa{sv}as)", (TRANSACTION, values, []))


def detail(package_id, text):
    return "UpdateDetail", GLib.Variant("(sasasasasasussuss)", (
        package_id, [], [], [], [], [], 0, text, "", 0, "", ""))


class PlayedPackageKit(PlayedService):
    """Use as a context manager. `transaction` takes the place of a good answer to
    CreateTransaction."""

    def __init__(self, bus, answers, transaction=None):
        super().__init__(bus, NAME)
        self.answers, self.calls = answers, []
        self._transaction, self._count = transaction, 0

    def answer(self, message, reply):
        method, path = message.get_member(), message.get_path()
        self.calls.append(method)
        if method == "CreateTransaction":
            self._count += 1
            body = GLib.Variant("(o)", (f"/transaction_{self._count}",))
            reply.set_body(body if self._transaction is None else self._transaction)
        self.send(reply)
        if path != PATH and method not in ("SetHints", "Cancel"):
            for name, body in self.answers.get(method, [finished()]) or []:
                self._emit(message.get_sender(), path, name, body)
        return True

    def _emit(self, receiver, path, name, body):
        interface = PROPERTIES if name == "PropertiesChanged" else TRANSACTION
        signal = Gio.DBusMessage.new_signal(path, interface, name)
        signal.set_destination(receiver)
        signal.set_body(body)
        self.send(signal)
