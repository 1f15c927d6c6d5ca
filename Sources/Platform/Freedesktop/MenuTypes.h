// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QVariantMap>

/// An entry of com.canonical.dbusmenu: its number and what is special about it.
struct MenuEntry
{
    int id = 0;
    QVariantMap properties;
};
using MenuEntries = QList<MenuEntry>;

/// An entry with the entries below it, each a `MenuLayout` in a variant.
struct MenuLayout
{
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// What the user did with an entry.
struct MenuEvent
{
    int id = 0;
    QString event;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const MenuEntry &entry);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEntry &entry);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEvent &event);

/// Makes the types known to QtDBus; needed once before they are sent or received.
void registerMenuTypes();

Q_DECLARE_METATYPE(MenuEntry)
Q_DECLARE_METATYPE(MenuLayout)
Q_DECLARE_METATYPE(MenuEvent)
