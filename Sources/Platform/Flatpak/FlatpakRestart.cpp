// SPDX-License-Identifier: MIT
#include "Platform/Flatpak/FlatpakRestart.h"

#include "Platform/Flatpak/FlatpakPortal.h"
#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QMap>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Of `Spawn`: in a sandbox of the newest version instead of one like this.
constexpr uint latestVersion = 1U << 1;
/// The portal answers once it has forked; a portal that is slower is not worth a hanging exit.
constexpr int limitMilliseconds = 10000;

/// As the portal reads paths and arguments: they end with a zero.
QByteArray ended(const QByteArray &text)
{
    return text + '\0';
}
} // namespace

FlatpakRestart::FlatpakRestart(QString program)
    : m_program(std::move(program))
{
}

bool FlatpakRestart::canRestart() const
{
    return sessionBus().has_value();
}

void FlatpakRestart::startSuccessor(char *arguments[])
{
    auto bus = sessionBus();
    if (!bus) {
        return;
    }
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<QMap<uint, QDBusUnixFileDescriptor>>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QByteArrayList command{ended(QFile::encodeName(m_program))};
    for (char **argument = arguments + 1; arguments[0] && *argument; ++argument) {
        command << ended(*argument);
    }
    const QDBusMessage call = FlatpakPortal::call(
        u"Spawn"_s, {ended("/"), QVariant::fromValue(command),
                     QVariant::fromValue(QMap<uint, QDBusUnixFileDescriptor>()),
                     QVariant::fromValue(QMap<QString, QString>()), latestVersion, QVariantMap()});
    bus->call(call, QDBus::Block, limitMilliseconds);
}
