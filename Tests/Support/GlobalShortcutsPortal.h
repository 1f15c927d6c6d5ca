// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Portal/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

/// xdg-desktop-portal's GlobalShortcuts, played on the session bus by a connection of its own. It
/// answers before a call returns, as portals may.
class GlobalShortcutsPortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// What a portal may get wrong.
    enum Oddity {
        None,
        NoSession,
        NamelessSession,
        NumberForSession,
        RefusedSession,
        NoShortcuts,
        EmptyShortcuts,
        OtherShortcut,
        TextForShortcuts,
        UnknownResponse,
    };

    GlobalShortcutsPortal();
    ~GlobalShortcutsPortal() override;

    // What it does.
    Oddity oddity = None;
    bool isSessionSilent = false;
    bool isBindSilent = false;
    uint bindResponse = 0;
    QString description = QStringLiteral("Press <Shift><Super>o");

    // What it was asked.
    QStringList registered;
    bool wasAskedBeforeRegistration = false;
    /// The latest session, as a path.
    QString session;
    /// The latest request, as a path.
    QString request;
    QList<PortalShortcut> bound;
    QStringList closed;
    QStringList calledOff;

    bool isUp() const { return m_isUp; }
    bool isAnswered() const { return m_isAnswered; }
    /// How many presses have come back to the bus's listeners.
    int pressCount() const { return m_pressCount; }

    /// As where no desktop stands behind the interface.
    void withdrawInterface() { m_isOffered = false; }
    /// In the latest session, unless another one is given; in none before there is one.
    void press(const QString &shortcut = QStringLiteral("capture"), const QString &of = {});
    void change(const QString &text);
    void closeSession();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private Q_SLOTS:
    void pressed() { ++m_pressCount; }

private:
    void createSession(const QDBusMessage &message);
    void bindShortcuts(const QDBusMessage &message);
    void answer(uint response, const QVariantMap &results);
    void send(const QString &from, const QString &interface, const QString &name,
              const QVariantList &arguments);

    QDBusConnection m_bus;
    /// The paths of its sessions and requests.
    QStringList m_objects;
    bool m_isUp = false;
    bool m_isOffered = true;
    bool m_isAnswered = false;
    int m_pressCount = 0;
};
