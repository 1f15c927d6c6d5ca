// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalRequest.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/Portal/PortalApplication.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QTimer>
#include <QUuid>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;

enum Response : uint {
    Success = 0,
    Cancelled = 1,
    EndedOtherwise = 2,
};

/// Where the portal answers a call with this token.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
}
} // namespace

QString portalToken()
{
    return u"vellora_"_s + QUuid::createUuid().toString(QUuid::Id128);
}

PortalRequest::PortalRequest(Call call, Handler handler)
    : m_call(std::move(call))
    , m_handler(std::move(handler))
{
}

PortalRequest::~PortalRequest()
{
    auto bus = sessionBus();
    if (m_handler && !m_path.isEmpty() && bus) {
        bus->send(QDBusMessage::createMethodCall(service, m_path,
                                                 u"org.freedesktop.portal.Request"_s, u"Close"_s));
    }
}

void PortalRequest::start()
{
    auto bus = sessionBus();
    if (!bus) {
        finish(PortalAnswer::Failed);
        return;
    }
    auto *portalEnd =
        new QDBusServiceWatcher(service, *bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(portalEnd, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { finish(PortalAnswer::Failed); });
    if (m_limit.count() > 0) {
        QTimer::singleShot(m_limit, this, [this] { finish(PortalAnswer::Failed); });
    }
    introduceToNewPortal();
    const QString token = portalToken();
    // Before the call, which may be answered before it returns.
    listen(requestPath(*bus, token));
    QVariantMap options = m_call.options;
    options.insert(u"handle_token"_s, token);
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal."_s + m_call.interface, m_call.method);
    message.setArguments(m_call.arguments + QVariantList{options});
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            finish(PortalAnswer::Failed);
        } else if (reply.value().path() != m_path) {
            // Portals before 0.9 know no tokens.
            listen(reply.value().path());
        }
    });
}

void PortalRequest::listen(const QString &path)
{
    m_path = path;
    if (auto bus = sessionBus()) {
        bus->connect(service, path, u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                     SLOT(respond(uint, QVariantMap)));
    }
}

void PortalRequest::respond(uint response, const QVariantMap &results)
{
    switch (response) {
    case Success:
        finish(PortalAnswer::Granted, results);
        break;
    case Cancelled:
        finish(PortalAnswer::Denied);
        break;
    case EndedOtherwise:
        finish(PortalAnswer::Failed, results);
        break;
    default:
        finish(PortalAnswer::Failed);
    }
}

void PortalRequest::finish(PortalAnswer answer, const QVariantMap &results)
{
    if (const Handler handler = std::exchange(m_handler, nullptr)) {
        handler(answer, results);
    }
}
