// SPDX-License-Identifier: MIT
#include "Support/BackgroundPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;

QDBusConnection portalBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
}
} // namespace

bool BackgroundPortal::start()
{
    return portalBus().registerObject(path, this, QDBusConnection::ExportAllSlots) &&
           portalBus().registerService(service);
}

void BackgroundPortal::end()
{
    portalBus().unregisterService(service);
    leavePlace();
}

void BackgroundPortal::leavePlace()
{
    portalBus().unregisterObject(path);
}

QDBusObjectPath BackgroundPortal::RequestBackground(const QString &, const QVariantMap &options)
{
    requests.append(options);
    QString sender = message().service().mid(1);
    const QString request = u"%1/request/%2/%3"_s.arg(path, sender.replace(u'.', u'_'),
                                                      options.value(u"handle_token"_s).toString());
    if (!isSilent) {
        QDBusMessage answer =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        const bool wanted = options.value(u"autostart"_s).toBool();
        answer << response
               << QVariantMap{{u"background"_s, true}, {u"autostart"_s, obeys ? wanted : !wanted}};
        // Before the call returns.
        connection().send(answer);
    }
    return QDBusObjectPath(request);
}
