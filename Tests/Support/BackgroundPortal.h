// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusContext>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QVariantMap>

/// xdg-desktop-portal's Background, played on the session bus by a connection of its own.
class BackgroundPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Background")

public:
    /// What it was asked, the latest last.
    QList<QVariantMap> requests;
    uint response = 0;
    /// Whether it lets a program start at login when asked to, and when asked not to.
    bool obeys = true;
    bool isSilent = false;

    /// Whether the bus has it now.
    bool start();
    /// Goes from the bus.
    static void end();
    /// Goes from its place; its name stays, which keeps the bus from starting the desktop's own.
    static void leavePlace();

public Q_SLOTS:
    QDBusObjectPath RequestBackground(const QString &parent, const QVariantMap &options);
};
