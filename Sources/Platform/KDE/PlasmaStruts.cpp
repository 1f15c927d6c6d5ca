// SPDX-License-Identifier: MIT
#include "Platform/KDE/PlasmaStruts.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.kde.plasmashell"_s;
/// In milliseconds. The user waits for the result; a shell that is busy for longer is not asked.
constexpr int answerTimeLimit = 300;
} // namespace

std::optional<QRect> availablePlasmaScreenRect(const QString &screenName)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Asking must not start a shell.
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(service)) {
        return std::nullopt;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/StrutManager"_s,
                                                       u"org.kde.PlasmaShell.StrutManager"_s,
                                                       u"availableScreenRect"_s);
    call << screenName;
    const QDBusReply<QRect> reply = bus.call(call, QDBus::Block, answerTimeLimit);
    return reply.isValid() && !reply.value().isEmpty() ? std::optional(reply.value())
                                                       : std::nullopt;
}
