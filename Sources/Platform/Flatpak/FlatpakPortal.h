// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

/// Flatpak's own portal on the session bus.
namespace FlatpakPortal {
inline const QString service = QStringLiteral("org.freedesktop.portal.Flatpak");
inline const QString monitorInterface =
    QStringLiteral("org.freedesktop.portal.Flatpak.UpdateMonitor");

QDBusMessage call(const QString &method, const QVariantList &arguments);
QDBusMessage monitorCall(const QString &monitor, const QString &method,
                         const QVariantList &arguments);
/// Does nothing for an empty path.
void closeMonitor(const QString &monitor);
} // namespace FlatpakPortal
