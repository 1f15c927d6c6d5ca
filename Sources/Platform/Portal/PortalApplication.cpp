// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalApplication.h"

#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QGuiApplication>
#include <QMutex>
#include <QRegularExpression>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// The portal and what it starts of the desktop come up within this.
constexpr int startTimeLimit = 5000;

const QString service = u"org.freedesktop.portal.Desktop"_s;

/// The portal that was asked last to take our id, by its unique name on the bus.
struct Acquaintance
{
    QMutex guard;
    QString portal;
};

Acquaintance &acquaintance()
{
    static Acquaintance last;
    return last;
}

QDBusMessage portalCall(const QString &interface, const QString &method,
                        const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, u"/org/freedesktop/portal/desktop"_s, interface, method);
    call.setArguments(arguments);
    return call;
}

QDBusMessage ask(const QDBusMessage &call)
{
    const auto bus = sessionBus();
    return bus ? bus->call(call, QDBus::Block, startTimeLimit) : QDBusMessage();
}

/// Empty while there is none.
QString uniqueNameOfPortal()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    call << service;
    const QDBusMessage answer = ask(call);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toString()
                                                       : QString();
}

QDBusMessage registration()
{
    return portalCall(u"org.freedesktop.host.portal.Registry"_s, u"Register"_s,
                      {QGuiApplication::desktopFileName(), QVariantMap()});
}

enum class Registration { Unknown, Taken, Refused };

/// What became of asking the portal to take our id. A portal that does not answer in time, as on a
/// slow disk, may have taken it all the same; it is asked again then, once, as a caller waits.
Registration askedToRegister(bool isAskedAgain)
{
    const QDBusMessage answer = ask(registration());
    const QString portal = uniqueNameOfPortal();
    {
        const QMutexLocker lock(&acquaintance().guard);
        acquaintance().portal = portal;
    }
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return Registration::Taken;
    }
    switch (QDBusError(answer).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return isAskedAgain ? Registration::Refused : Registration::Unknown;
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownObject:
    case QDBusError::ServiceUnknown:
        return Registration::Refused;
    default:
        // An id that it has already is taken from a connection only once.
        return isAskedAgain ? Registration::Taken : Registration::Refused;
    }
}

bool isRegistered()
{
    static QMutex guard;
    static Registration state = Registration::Unknown;
    static bool isAskedAgain = false;
    const QMutexLocker lock(&guard);
    if (state == Registration::Unknown) {
        state = askedToRegister(std::exchange(isAskedAgain, true));
    }
    return state == Registration::Taken;
}

QString unitId()
{
    QFile file(u"/proc/self/cgroup"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString group = QString::fromUtf8(file.readAll()).trimmed();
    return portalApplicationId(group.section(u'/', -1));
}
} // namespace

QString portalApplicationId(const QString &unit)
{
    // As systemd's "Desktop Environments" names them: app[-<launcher>]-<id>-<random>.scope or
    // .slice, and app[-<launcher>]-<id>[@<random>].service; within a part a dash is "\x2d".
    static const QRegularExpression scope(
        u"^app-(?:[A-Za-z0-9]+-)?([^-]+)-[A-Za-z0-9]*\\.(?:scope|slice)$"_s);
    static const QRegularExpression service(
        u"^app-(?:[A-Za-z0-9]+-)?([^-@]+)(?:@[^.]*)?\\.service$"_s);
    for (const QRegularExpression &pattern : {scope, service}) {
        if (const auto match = pattern.match(unit); match.hasMatch()) {
            return match.captured(1).replace(u"\\x2d"_s, u"-"_s);
        }
    }
    return {};
}

QString portalApplicationId()
{
    // The portal takes an id before the connection's first other call alone, and keeps it.
    return isRegistered() ? QGuiApplication::desktopFileName() : unitId();
}

void introduceToNewPortal()
{
    const auto bus = sessionBus();
    if (!bus) {
        return;
    }
    const QString portal = uniqueNameOfPortal();
    const QMutexLocker lock(&acquaintance().guard);
    if (std::exchange(acquaintance().portal, portal) != portal) {
        bus->send(registration());
    }
}

uint portalVersion(const QString &interface)
{
    portalApplicationId();
    const QDBusMessage answer =
        ask(portalCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                       {u"org.freedesktop.portal."_s + interface, u"version"_s}));
    return answer.arguments().isEmpty()
               ? 0
               : qvariant_cast<QDBusVariant>(answer.arguments().constFirst()).variant().toUInt();
}
