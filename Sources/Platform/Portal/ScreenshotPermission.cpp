// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotPermission.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/Portal/PortalApplication.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {
/// The store answers from memory.
constexpr int storeTimeLimit = 1000;

const QString store = u"org.freedesktop.impl.portal.PermissionStore"_s;
const QString storePath = u"/org/freedesktop/impl/portal/PermissionStore"_s;
/// The table's name, and that of its one entry.
const QString screenshot = u"screenshot"_s;

/// The sentence, with the program's name where it has a place for that.
ScreenRecordingRefusal told(const char *sentence)
{
    const QString name = QCoreApplication::applicationName();
    return {QCoreApplication::translate("ScreenshotPermission", sentence).replace(u"%1"_s, name),
            QString::fromUtf8(sentence).replace(u"%1"_s, name)};
}
} // namespace

ScreenshotPermission storedScreenshotPermission()
{
    const auto bus = sessionBus();
    if (!bus) {
        return ScreenshotPermission::Unanswered;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(store, storePath, store, u"Lookup"_s);
    call << screenshot << screenshot;
    const QDBusMessage reply = bus->call(call, QDBus::Block, storeTimeLimit);
    if (reply.type() != QDBusMessage::ReplyMessage || !reply.signature().startsWith(u"a{sas}")) {
        return ScreenshotPermission::Unanswered;
    }
    const auto permissions = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().constFirst());
    // One word; to the portal several are as good as none.
    const QStringList answer = permissions.value(portalApplicationId());
    if (answer == QStringList{u"yes"_s}) {
        return ScreenshotPermission::Yes;
    }
    return answer == QStringList{u"no"_s} ? ScreenshotPermission::No
                                          : ScreenshotPermission::Unanswered;
}

ScreenRecordingRefusal deniedScreenshots()
{
    const auto bus = sessionBus();
    const char *text = QT_TRANSLATE_NOOP("ScreenshotPermission",
                                         "It was denied; the desktop’s settings change that.");
    if (portalApplicationId().isEmpty()) {
        // The answer of all programs without an id, which no settings show.
        text = QT_TRANSLATE_NOOP("ScreenshotPermission",
                                 "It was denied to all programs that the desktop did not start. "
                                 "Start %1 from the list of applications.");
    } else if (bus && bus->interface()->isServiceRegistered(u"org.gnome.Shell"_s)) {
        text = QT_TRANSLATE_NOOP("ScreenshotPermission",
                                 "It was denied; this changes it: Settings, Applications, %1, "
                                 "Screenshots.");
    }
    return told(text);
}

ScreenRecordingRefusal unansweredScreenshots()
{
    return told(QT_TRANSLATE_NOOP("ScreenshotPermission",
                                  "The desktop’s portal was asked, and gave no picture."));
}

ScreenshotPermissionWatch::ScreenshotPermissionWatch()
{
    if (auto bus = sessionBus()) {
        bus->connect(store, storePath, store, u"Changed"_s, this, SIGNAL(changed()));
    }
}
