# SPDX-License-Identifier: MIT
"""Any program of the session may call what ours has on the bus, with whatever it likes."""

import random
import unittest
from xml.etree import ElementTree

import dbus
from dbus.lowlevel import MethodCallMessage

from support import main, status_notifier
from support.comparing import is_dimmed, settled_screenshot
from support.desktop import Clipboard
from support.page import Page
from support.program import APPLICATION_ID, Program
from support.waiting import PATIENCE, wait_until

TEXT = "Still here"
ROUNDS = 12
# Arguments by their types. A method is called with each of these that it does not take.
WRONG = [("", ()), ("s", ("no number",)), ("ai", ([1, 2],)), ("v", (dbus.Double(float("nan")),)),
         ("a{sv}", ({"": dbus.Boolean(True)},)), ("aaaai", ([[[[]]]],)), ("t" * 40, (2 ** 64 - 1,) * 40)]
# What a right click, a left click and a start of the program do is no damage.
STARTS_SOMETHING = {"org.kde.StatusNotifierItem": {"Activate", "SecondaryActivate", "ContextMenu"},
                    "org.freedesktop.Application": {"Activate"}}


def a_value(kind, source):
    """One that a D-Bus type allows, and nobody expects."""
    if kind[0] == "a" and kind[1:2] == "{":
        return {a_value(kind[2], source): a_value(kind[3:-1], source) for _ in range(3)}
    if kind[0] == "a":
        return [a_value(kind[1:], source) for _ in range(source.choice((0, 1, 30)))]
    if kind[0] == "(":
        return tuple(a_value(str(part), source) for part in dbus.Signature(kind[1:-1]))
    if kind == "v":
        inner = source.choice(("i", "s", "d", "ai", "as", "a{sv}", "(iis)"))
        value = a_value(inner, source)
        return {"i": dbus.Int32, "s": dbus.String, "d": dbus.Double}.get(
            inner, lambda value: _contained(inner, value))(value)
    if kind == "s":
        return source.choice(("", " ", "clicked\n", "x" * 20_000, "\u202e\u202d\uffff", "%n%s%n",
                              "<b>&#0;</b>", "../../etc", "opened", "hovered"))
    if kind == "d":
        return source.choice((0.0, -1e308, float("inf"), float("nan")))
    if kind == "b":
        return source.choice((True, False))
    limit = 2 ** {"y": 8, "n": 15, "q": 16, "i": 31, "u": 32, "x": 63, "t": 64}[kind] - 1
    return source.choice((0, 1, 2, 99, limit, *((-1, -limit - 1) if kind in "nix" else ())))


def _contained(kind, value):
    if kind.startswith("a{"):
        return dbus.Dictionary(value, signature=kind[2:-1])
    if kind.startswith("a"):
        return dbus.Array(value, signature=kind[1:])
    return dbus.Struct(value, signature=kind[1:-1])


class HostileBusTest(unittest.TestCase):
    def setUp(self):
        self.bus = dbus.SessionBus()

    def call(self, name, path, interface, method, signature, arguments):
        """Whatever the answer is: there has to be one."""
        message = MethodCallMessage(name, path, interface, method)
        if signature:
            message.append(*arguments, signature=signature)
        try:
            self.bus.send_message_with_reply_and_block(message, PATIENCE)
        except dbus.DBusException as problem:
            self.assertNotIn(problem.get_dbus_name(),
                             ("org.freedesktop.DBus.Error.NoReply",
                              "org.freedesktop.DBus.Error.ServiceUnknown"), (method, arguments))

    def methods(self, name, path="/"):
        """(object, interface, name, types of its arguments) of all that this connection has."""
        node = ElementTree.fromstring(self.bus.get_object(name, path, introspect=False)
                                      .Introspect(dbus_interface=dbus.INTROSPECTABLE_IFACE))
        for interface in node.findall("interface"):
            for method in interface.findall("method"):
                kinds = [argument.get("type") for argument in method.findall("arg")
                         if argument.get("direction") != "out"]
                yield path, interface.get("name"), method.get("name"), kinds
        for child in node.findall("node"):
            yield from self.methods(name, f"{path.rstrip('/')}/{child.get('name')}")

    def test_garbage_on_every_method(self):
        source = random.Random(20)
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            program.status_item()
            titles = status_notifier.menu_titles()
            tip = status_notifier.tool_tip_text()
            before = settled_screenshot()
            called = set()
            for name in (APPLICATION_ID, status_notifier.service()):
                for path, interface, method, kinds in list(self.methods(name)):
                    called.add(method)
                    for signature, arguments in WRONG:
                        if signature != "".join(kinds):
                            self.call(name, path, interface, method, signature, arguments)
                    if method in STARTS_SOMETHING.get(interface, ()):
                        continue
                    for _ in range(ROUNDS):
                        self.call(name, path, interface, method, "".join(kinds),
                                  [a_value(kind, source) for kind in kinds])
            self.assertLessEqual({"ActivateAction", "Open", "GetLayout", "EventGroup", "Scroll",
                                  "ProvideXdgActivationToken"}, called)
            self.assertFalse(is_dimmed(before))
            self.assertEqual(status_notifier.menu_titles(), titles)
            self.assertEqual(status_notifier.tool_tip_text(), tip)
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the copied text", lambda: Clipboard.text() == TEXT)


if __name__ == "__main__":
    main()
