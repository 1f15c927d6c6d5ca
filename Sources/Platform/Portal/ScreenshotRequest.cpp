// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotRequest.h"

#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QUrl>
#include <QUuid>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
/// There was no window of ours that the question could belong to.
const QString noParentWindow;
constexpr uint success = 0;

/// Where the portal answers a call with this token.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
}

/// The picture in the portal's file. The file is ours to delete.
QImage takeImage(const QString &uri)
{
    const QString file = QUrl(uri).toLocalFile();
    const QImage image(file);
    if (!file.isEmpty()) {
        QFile::remove(file);
    }
    return image.convertToFormat(QImage::Format_RGB32);
}
} // namespace

ScreenshotRequest::ScreenshotRequest(Handler handler)
    : m_handler(std::move(handler))
{
}

void ScreenshotRequest::start()
{
    auto bus = sessionBus();
    if (!bus) {
        finish({});
        return;
    }
    const QString token = u"vellora_"_s + QUuid::createUuid().toString(QUuid::Id128);
    auto *portalEnd =
        new QDBusServiceWatcher(service, *bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(portalEnd, &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish({}); });
    // Before the call, which may be answered before it returns.
    listen(requestPath(*bus, token));
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Screenshot"_s, u"Screenshot"_s);
    call << noParentWindow << QVariantMap{{u"handle_token"_s, token}, {u"interactive"_s, false}};
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            finish({});
        } else if (reply.value().path() != m_path) {
            // Portals before 0.9 know no tokens.
            listen(reply.value().path());
        }
        watcher->deleteLater();
    });
}

void ScreenshotRequest::listen(const QString &path)
{
    m_path = path;
    if (auto bus = sessionBus()) {
        bus->connect(service, path, u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                     SLOT(respond(uint, QVariantMap)));
    }
}

void ScreenshotRequest::respond(uint response, const QVariantMap &results)
{
    finish(response == success ? takeImage(results.value(u"uri"_s).toString()) : QImage());
}

void ScreenshotRequest::finish(const QImage &image)
{
    // A copy gone from here: the handler may delete this object.
    if (const Handler handler = std::exchange(m_handler, nullptr)) {
        handler(image);
    }
}
