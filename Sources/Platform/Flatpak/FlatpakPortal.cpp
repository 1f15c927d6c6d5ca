// SPDX-License-Identifier: MIT
#include "Platform/Flatpak/FlatpakPortal.h"

#include "Platform/Freedesktop/SessionBus.h"

using namespace Qt::StringLiterals;

QDBusMessage FlatpakPortal::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, u"/org/freedesktop/portal/Flatpak"_s, service, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage FlatpakPortal::monitorCall(const QString &monitor, const QString &method,
                                        const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, monitor, monitorInterface, method);
    message.setArguments(arguments);
    return message;
}

void FlatpakPortal::closeMonitor(const QString &monitor)
{
    auto bus = sessionBus();
    if (bus && !monitor.isEmpty()) {
        bus->send(monitorCall(monitor, u"Close"_s, {}));
    }
}
