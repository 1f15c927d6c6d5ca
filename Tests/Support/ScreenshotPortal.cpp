// SPDX-License-Identifier: MIT
#include "Support/ScreenshotPortal.h"

#include <QDBusMessage>
#include <QDateTime>
#include <QFile>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;

QDBusConnection portalBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
}
} // namespace

bool ScreenshotPortal::start()
{
    return portalBus().registerObject(path, this, QDBusConnection::ExportAllSlots) &&
           portalBus().registerService(service);
}

void ScreenshotPortal::end()
{
    portalBus().unregisterService(service);
    leavePlace();
}

void ScreenshotPortal::leavePlace()
{
    portalBus().unregisterObject(path);
}

QDBusMessage ScreenshotPortal::answerAt(const QString &request) const
{
    QDBusMessage answer =
        QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
    answer << response << QVariantMap{{u"uri"_s, uri}};
    return answer;
}

void ScreenshotPortal::answer(qsizetype number) const
{
    portalBus().send(answerAt(requests.at(number)));
}

QDBusObjectPath ScreenshotPortal::Screenshot(const QString &parent, const QVariantMap &given)
{
    parentWindow = parent;
    options = given;
    QString sender = message().service().mid(1);
    const QString token = ignoresTokens ? u"made_up"_s : given.value(u"handle_token"_s).toString();
    const QString request = u"%1/request/%2/%3"_s.arg(path, sender.replace(u'.', u'_'), token);
    requests << request;
    const QDBusMessage answer = answerAt(request);
    if (savesNow && QUrl(uri).isLocalFile()) {
        // As if the picture had just been saved.
        QFile file(QUrl(uri).toLocalFile());
        if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
            file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
        }
    }
    if (!laterUris.isEmpty()) {
        uri = laterUris.takeFirst();
    }
    if (endsSilently) {
        QTimer::singleShot(100, [] { portalBus().unregisterService(service); });
    } else if (ignoresTokens) {
        QTimer::singleShot(100, this, [answer] { portalBus().send(answer); });
    } else if (!isSilent) {
        // Before the call returns.
        connection().send(answer);
    }
    return QDBusObjectPath(request);
}
