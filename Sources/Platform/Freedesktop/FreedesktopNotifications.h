// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Notifications.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <optional>

class QDBusPendingCallWatcher;

/// The desktop's notifications as freedesktop.org specifies them: "org.freedesktop.Notifications"
/// on the session bus, whose service is started where the bus knows one.
class FreedesktopNotifications : public QObject, public Notifications
{
    Q_OBJECT

public:
    /// Who the messages are from.
    struct Identity
    {
        /// The program's name for people.
        QString name;
        /// A name in the icon theme, or an absolute path.
        QString iconName;
        /// The name of the desktop entry, without its suffix.
        QString desktopEntry;
    };

    explicit FreedesktopNotifications(Identity identity);

    void post(const QString &id, const Notification &notification) override;
    void withdraw(const QString &id) override;

private Q_SLOTS:
    void invokeAction(uint number, const QString &key);
    void forget(uint number, uint reason);

private:
    /// What is known of one id.
    struct Posted
    {
        /// The service's own number of the message; 0 while it has not told any.
        uint number = 0;
        std::function<void()> action;
        /// Whether the service has been given it and has not answered yet. What is wanted
        /// meanwhile waits for that: it takes the number to replace or close a message.
        bool isUnderway = false;
        std::optional<Notification> next;
        bool isWithdrawn = false;
    };
    using Iterator = QHash<QString, Posted>::iterator;

    /// Finds out what the service can, then sends what waits for that.
    void askForCapabilities();
    void send(const QString &id, const Notification &notification);
    void sent(const QString &id, const QDBusPendingCallWatcher &answer);
    void close(uint number);
    QString idOf(uint number) const;

    Identity m_identity;
    QHash<QString, Posted> m_posted;
    /// Absent until the service has told; a new service is asked anew.
    std::optional<QStringList> m_capabilities;
    bool m_isAsked = false;
};
