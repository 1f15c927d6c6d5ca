// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/SessionBus.h"

#include <QFileInfo>

bool hasSessionBus()
{
    // The two places where a client looks, in this order.
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) {
        return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
    }
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeFolder.isEmpty() && QFileInfo::exists(runtimeFolder + QStringLiteral("/bus"));
}

std::optional<QDBusConnection> sessionBus()
{
    if (!hasSessionBus()) {
        return std::nullopt;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}
