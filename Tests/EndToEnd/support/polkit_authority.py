# SPDX-License-Identifier: MIT
"""polkit's authority as a played one, which answers every question with what a file says: "yes",
"no" or "challenge" (as when nobody can be asked for a password).

    polkit_authority.py FILE
"""

import sys
from pathlib import Path

from gi.repository import Gio, GLib

NAME = "org.freedesktop.PolicyKit1"
INTERFACE = """
<node>
  <interface name="org.freedesktop.PolicyKit1.Authority">
    <method name="CheckAuthorization">
      <arg type="(sa{sv})" direction="in"/> <arg type="s" direction="in"/>
      <arg type="a{ss}" direction="in"/> <arg type="u" direction="in"/>
      <arg type="s" direction="in"/> <arg type="(bba{ss})" direction="out"/>
    </method>
    <method name="CancelCheckAuthorization"><arg type="s" direction="in"/></method>
    <property name="BackendName" type="s" access="read"/>
    <property name="BackendVersion" type="s" access="read"/>
    <property name="BackendFeatures" type="u" access="read"/>
    <signal name="Changed"/>
  </interface>
</node>
"""
PROPERTIES = {"BackendName": GLib.Variant("s", "played"), "BackendVersion": GLib.Variant("s", "1"),
              "BackendFeatures": GLib.Variant("u", 0)}


def main():
    answer = Path(sys.argv[1])

    def call(_bus, _sender, _path, _interface, method, _arguments, invocation):
        if method == "CheckAuthorization":
            word = answer.read_text().strip()
            invocation.return_value(GLib.Variant(
                "((bba{ss}))", ((word == "yes", word == "challenge", {}),)))
        else:
            invocation.return_value(None)

    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
    interface, = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces
    bus.register_object("/org/freedesktop/PolicyKit1/Authority", interface, call,
                        lambda _bus, _sender, _path, _interface, name: PROPERTIES[name], None)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
