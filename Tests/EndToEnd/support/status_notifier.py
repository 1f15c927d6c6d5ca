# SPDX-License-Identifier: MIT
"""The program's status item as a panel meets it on the session bus (StatusNotifierItem)."""

import dbus

from .waiting import wait_until

PROPERTIES = "org.freedesktop.DBus.Properties"


def items():
    """What the panel knows, each by its bus name and object."""
    watcher = dbus.SessionBus().get_object("org.kde.StatusNotifierWatcher",
                                           "/StatusNotifierWatcher")
    return watcher.Get("org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems",
                       dbus_interface=PROPERTIES)


def _living():
    """The bus names and paths of those whose programs live."""
    for item in items():
        service, _, path = item.partition("/")
        # GNOME's watcher parts them by another sign.
        service = service.rstrip("@")
        if dbus.SessionBus().name_has_owner(service):
            yield service, "/" + (path or "StatusNotifierItem")


def _item():
    """The bus name and object of the one item that the panel knows."""
    def the_one():
        found = list(_living())
        return found[0] if len(found) == 1 else None

    service, path = wait_until("one status item on the session bus", the_one)
    return service, dbus.SessionBus().get_object(service, path)


def service():
    """The bus name of the connection that has it."""
    return _item()[0]


def read(name):
    _, item = _item()
    return item.Get("org.kde.StatusNotifierItem", name, dbus_interface=PROPERTIES)


def tool_tip_text():
    """The text below the title, which is the program's name."""
    _, _, title, text = read("ToolTip")
    assert title == "Vellora", f"the tool tip's title is {title!r}"
    return str(text)


def menu_titles():
    """The entries of the menu that the panel is to draw; a separator is empty."""
    service, _ = _item()
    menu = dbus.SessionBus().get_object(service, read("Menu"))
    interface = dbus.Interface(menu, "com.canonical.dbusmenu")
    interface.AboutToShow(0)
    _, (_, _, entries) = interface.GetLayout(0, -1, ["label", "type"])
    return ["" if properties.get("type") == "separator"
            else str(properties["label"]).replace("_", "") for _, properties, _ in entries]
