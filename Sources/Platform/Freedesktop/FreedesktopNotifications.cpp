// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/FreedesktopNotifications.h"

#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;

/// The key of what a click on the message itself does.
const QString clicked = u"default"_s;

/// Long enough for a service that the bus starts for it.
constexpr int timeLimit = 10'000;

/// How long a message is seen is the service's choice.
constexpr int usualDuration = -1;

QDBusMessage serviceCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, service, method);
    call.setArguments(arguments);
    return call;
}
} // namespace

FreedesktopNotifications::FreedesktopNotifications(Identity identity)
    : m_identity(std::move(identity))
{
    auto bus = sessionBus();
    if (!bus) {
        return;
    }
    bus->connect(service, path, service, u"ActionInvoked"_s, this,
                 SLOT(invokeAction(uint, QString)));
    bus->connect(service, path, service, u"NotificationClosed"_s, this, SLOT(forget(uint, uint)));
    auto *owner =
        new QDBusServiceWatcher(service, *bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(owner, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        // With its messages. What waits for an answer gets an error for one.
        m_capabilities.reset();
        m_posted.removeIf([](const Iterator &each) { return !each->isUnderway; });
    });
}

void FreedesktopNotifications::post(const QString &id, const Notification &notification)
{
    if (!hasSessionBus()) {
        return;
    }
    Posted &posted = m_posted[id];
    posted.isWithdrawn = false;
    posted.next = notification;
    if (posted.isUnderway) {
        return;
    }
    if (m_capabilities) {
        send(id, *std::exchange(posted.next, std::nullopt));
    } else {
        askForCapabilities();
    }
}

void FreedesktopNotifications::withdraw(const QString &id)
{
    const auto posted = m_posted.find(id);
    if (posted == m_posted.end()) {
        return;
    }
    if (posted->isUnderway) {
        posted->next.reset();
        posted->isWithdrawn = true;
        return;
    }
    close(posted->number);
    m_posted.erase(posted);
}

void FreedesktopNotifications::askForCapabilities()
{
    const auto bus = sessionBus();
    if (!bus || std::exchange(m_isAsked, true)) {
        return;
    }
    auto *answer = new QDBusPendingCallWatcher(
        bus->asyncCall(serviceCall(u"GetCapabilities"_s, {}), timeLimit), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        m_isAsked = false;
        const QDBusPendingReply<QStringList> reply = *answer;
        if (reply.isError()) {
            // Nobody shows messages here.
            m_posted.removeIf([](const Iterator &each) { return each->next && !each->isUnderway; });
            return;
        }
        m_capabilities = reply.value();
        for (const QString &id : m_posted.keys()) {
            Posted &posted = m_posted[id];
            if (posted.next && !posted.isUnderway) {
                send(id, *std::exchange(posted.next, std::nullopt));
            }
        }
    });
}

void FreedesktopNotifications::send(const QString &id, const Notification &notification)
{
    Posted &posted = m_posted[id];
    posted.isUnderway = true;
    posted.action = notification.action;
    const bool readsMarkup = m_capabilities && m_capabilities->contains(u"body-markup"_s);
    QStringList actions;
    if (notification.action) {
        // Services without buttons show no title of it, and the others none of this key.
        actions = {clicked, m_identity.name};
    }
    const QVariantMap hints{{u"transient"_s, notification.isTransient},
                            {u"desktop-entry"_s, m_identity.desktopEntry}};
    const QDBusMessage call = serviceCall(
        u"Notify"_s, {m_identity.name, posted.number, m_identity.iconName, notification.title,
                      readsMarkup ? notification.body.toHtmlEscaped() : notification.body, actions,
                      hints, usualDuration});
    auto *answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, timeLimit), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, id, answer] {
        answer->deleteLater();
        sent(id, *answer);
    });
}

void FreedesktopNotifications::sent(const QString &id, const QDBusPendingCallWatcher &answer)
{
    Posted &posted = m_posted[id];
    const QDBusPendingReply<uint> reply = answer;
    posted.isUnderway = false;
    posted.number = reply.isError() ? 0 : reply.value();
    if (posted.isWithdrawn) {
        close(posted.number);
        m_posted.remove(id);
    } else if (posted.next) {
        const Notification next = *std::exchange(posted.next, std::nullopt);
        post(id, next);
    } else if (posted.number == 0) {
        m_posted.remove(id);
    }
}

void FreedesktopNotifications::close(uint number)
{
    auto bus = sessionBus();
    if (bus && number != 0) {
        bus->send(serviceCall(u"CloseNotification"_s, {number}));
    }
}

QString FreedesktopNotifications::idOf(uint number) const
{
    for (auto each = m_posted.cbegin(); number != 0 && each != m_posted.cend(); ++each) {
        if (each->number == number) {
            return each.key();
        }
    }
    return {};
}

void FreedesktopNotifications::invokeAction(uint number, const QString &key)
{
    const auto posted = m_posted.find(idOf(number));
    if (posted != m_posted.end() && key == clicked) {
        if (const auto action = std::exchange(posted->action, nullptr)) {
            action();
        }
    }
}

void FreedesktopNotifications::forget(uint number, uint)
{
    const auto posted = m_posted.find(idOf(number));
    if (posted == m_posted.end()) {
        return;
    }
    if (posted->isUnderway) {
        // Closed while the next one was on its way, which is a new message then.
        posted->number = 0;
    } else {
        m_posted.erase(posted);
    }
}
