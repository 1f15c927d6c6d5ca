# SPDX-License-Identifier: MIT
"""Services on a bus of their own, on which nobody else is and nothing is started by itself."""

import subprocess
import tempfile
import threading
from pathlib import Path

from gi.repository import Gio, GLib

from .waiting import is_listening, wait_until

# The limits of a system bus are lower; what a test sends has to arrive.
BUS = """<busconfig>
  <listen>unix:path={folder}/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*"/><allow own="*"/><allow user="*"/><allow receive_sender="*"/>
  </policy>
  <limit name="max_message_size">134217728</limit>
  <limit name="max_incoming_bytes">268435456</limit>
  <limit name="max_outgoing_bytes">268435456</limit>
</busconfig>
"""


class PrivateBus:
    """Use as a context manager."""

    def __enter__(self):
        # A short path: sockets have no long ones.
        self._folder = tempfile.TemporaryDirectory(prefix="bus-", dir="/tmp")
        folder = Path(self._folder.name)
        (folder / "bus.conf").write_text(BUS.format(folder=folder))
        self.address = f"unix:path={folder}/bus"
        self._process = subprocess.Popen(
            ["dbus-daemon", f"--config-file={folder}/bus.conf", "--nofork"],
            stderr=subprocess.DEVNULL)
        wait_until("the private bus", lambda: is_listening(folder / "bus"))
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(60)
        self._folder.cleanup()


class PlayedService:
    """Owns `name` on the bus and answers every call in `answer`, whatever it is of: no interface
    has to be described. Use as a context manager.
    """

    def __init__(self, bus, name):
        self._address, self._name = bus.address, name

    def __enter__(self):
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        ready = threading.Event()
        self._thread = threading.Thread(target=self._run, args=(ready,), daemon=True)
        self._thread.start()
        assert ready.wait(60)
        return self

    def __exit__(self, *_):
        self.end()

    def end(self):
        """Goes from the bus."""
        self._loop.quit()
        self._thread.join(60)

    def answer(self, message, reply):
        """Called on a thread of the connection's: gives `reply` its body and sends what it has to
        send besides; true when it has sent the reply too."""
        raise NotImplementedError

    def _run(self, ready):
        self._context.push_thread_default()
        flags = Gio.DBusConnectionFlags
        self._connection = Gio.DBusConnection.new_for_address_sync(
            self._address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        self._connection.add_filter(self._filter)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", "RequestName",
                                   GLib.Variant("(su)", (self._name, 0)), None, 0, -1, None)
        ready.set()
        self._loop.run()
        self._connection.close_sync(None)
        self._context.pop_thread_default()

    def _filter(self, _connection, message, incoming):
        if not incoming or message.get_message_type() != Gio.DBusMessageType.METHOD_CALL:
            return message
        reply = Gio.DBusMessage.new_method_reply(message)
        if not self.answer(message, reply):
            self.send(reply)
        return None

    def send(self, message):
        self._connection.send_message(message, Gio.DBusSendMessageFlags.NONE)
