// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayBindingRecord.h"

#include "Platform/KeyTap.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {
/// A record has some hundred bytes.
constexpr qint64 longestRecord = 4096;
/// XKB's numbers of keys go up to this.
constexpr int lastKeycode = 255;

QString filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           u"/vellora-sway-binding"_s;
}

QByteArray currentSocket()
{
    return qgetenv("SWAYSOCK");
}
} // namespace

QByteArray SwayBindingRecord::text(const SwayKey &key, const QByteArray &socket)
{
    const QJsonObject record{{u"socket"_s, QString::fromUtf8(socket)},
                             {u"flags"_s, qint64(key.flags)},
                             {u"keycode"_s, qint64(key.keycode)},
                             {u"keysyms"_s, QJsonArray::fromStringList(key.keysyms)}};
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

std::optional<SwayKey> SwayBindingRecord::parsed(const QByteArray &text, const QByteArray &socket)
{
    const QJsonObject record = QJsonDocument::fromJson(text).object();
    const int keycode = record.value("keycode"_L1).toInt();
    if (socket.isEmpty() || record.value("socket"_L1).toString() != QString::fromUtf8(socket) ||
        keycode <= 0 || keycode > lastKeycode) {
        return std::nullopt;
    }
    const auto flags = static_cast<quint64>(record.value("flags"_L1).toInteger());
    SwayKey key{flags & KeyFlags::mask, static_cast<quint32>(keycode), {}};
    const QJsonArray names = record.value("keysyms"_L1).toArray();
    for (const auto &name : names) {
        key.keysyms << name.toString();
    }
    return key;
}

void SwayBindingRecord::write(const SwayKey &key)
{
    QSaveFile file(filePath());
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text(key, currentSocket()));
        file.commit();
    }
}

void SwayBindingRecord::clear()
{
    QFile::remove(filePath());
}

std::optional<SwayKey> SwayBindingRecord::read()
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? parsed(file.read(longestRecord), currentSocket())
                                          : std::nullopt;
}
