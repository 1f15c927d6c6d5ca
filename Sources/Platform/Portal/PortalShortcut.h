// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

/// A shortcut as the GlobalShortcuts portal writes it: a(sa{sv}) on the bus.
struct PortalShortcut
{
    QString id;
    QVariantMap properties;
};
Q_DECLARE_METATYPE(PortalShortcut)

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

/// Makes the type known to QtDBus.
void registerPortalShortcut();

/// The shortcuts in an answer of the portal; none when it holds something else.
QList<PortalShortcut> portalShortcuts(const QVariant &answer);

/// A combination as the portal takes it, such as "SHIFT+LOGO+o". `flags` are bits of `KeyFlags`,
/// `keyName` is XKB's name of the key.
QString portalTrigger(quint64 flags, const QString &keyName);

/// Whether a description of keys for people, such as "Press <Shift><Super>o", is that of the
/// combination. Descriptions in other languages than English may seem to be of another.
bool describesTrigger(const QString &description, quint64 flags, const QString &keyName);
