// SPDX-License-Identifier: MIT
#include "Platform/UserDefaults.h"

#include <QFile>
#include <QStandardPaths>

#include <chrono>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Longer than the pauses of a hand that drags, shorter than what a person takes for lost.
constexpr auto gatheringTime = 500ms;
} // namespace

UserDefaults::UserDefaults()
    : UserDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                   u"/vellora/vellora.ini"_s)
{
}

UserDefaults::UserDefaults(const QString &filePath)
    : m_file(filePath, QSettings::IniFormat)
{
    // QSettings reads a section when it is first asked for; only then does it meet the damage.
    m_file.allKeys();
    m_damaged = m_file.status() == QSettings::FormatError;
    m_gathering.setSingleShot(true);
    m_gathering.callOnTimeout([this] { flush(); });
}

UserDefaults::~UserDefaults()
{
    flush();
}

bool UserDefaults::contains(const QString &key) const
{
    return m_gathered.contains(key) || m_file.contains(key);
}

std::optional<QString> UserDefaults::string(const QString &key) const
{
    if (const auto gathered = m_gathered.constFind(key); gathered != m_gathered.cend()) {
        return *gathered;
    }
    const QVariant value = m_file.value(key);
    if (value.typeId() == QMetaType::QStringList) {
        // A person who edits the file leaves out the quotes around "{360, 240}".
        return value.toStringList().join(u", "_s);
    }
    if (value.typeId() != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toString();
}

bool UserDefaults::boolean(const QString &key) const
{
    const QString text = string(key).value_or(QString()).trimmed().toLower();
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? number != 0 : text == u"true" || text == u"yes";
}

bool UserDefaults::set(const QString &key, const QString &text)
{
    return write(key, text);
}

bool UserDefaults::set(const QString &key, bool value)
{
    // As text, so that it reads the same before and after a round through the file.
    return write(key, value ? u"true"_s : u"false"_s);
}

void UserDefaults::revert(const QString &key)
{
    m_gathered.remove(key);
}

void UserDefaults::setGathered(const QString &key, const QString &text)
{
    m_gathered.insert(key, text);
    m_gathering.start(gatheringTime);
}

void UserDefaults::flush()
{
    m_gathering.stop();
    for (const auto &[key, text] : std::exchange(m_gathered, {}).asKeyValueRange()) {
        write(key, text);
    }
}

bool UserDefaults::write(const QString &key, const QString &text)
{
    if (keepDamagedFile() && writeToFile(key, text)) {
        m_gathered.remove(key);
        return true;
    }
    m_gathered.insert(key, text);
    if (const auto tell = std::exchange(writeDidFail, nullptr)) {
        tell();
    }
    return false;
}

bool UserDefaults::writeToFile(const QString &key, const QString &text)
{
    const QVariant before = m_file.value(key);
    // An object of its own, which shares the values: one that has failed keeps that status for
    // good.
    QSettings writer(filePath(), QSettings::IniFormat);
    writer.setValue(key, text);
    // At once: a session may end without warning.
    writer.sync();
    if (writer.status() != QSettings::AccessError) {
        return true;
    }
    // Or it would be written with the next value that can be.
    if (before.isValid()) {
        writer.setValue(key, before);
    } else {
        writer.remove(key);
    }
    return false;
}

bool UserDefaults::keepDamagedFile()
{
    if (!m_damaged) {
        return true;
    }
    // The copy of an earlier damage goes only once there is a whole new one.
    const QString copy = filePath() + u".damaged"_s;
    const QString unfinished = copy + u'~';
    QFile::remove(unfinished);
    if (!QFile::copy(filePath(), unfinished) ||
        std::rename(QFile::encodeName(unfinished).constData(),
                    QFile::encodeName(copy).constData()) != 0) {
        QFile::remove(unfinished);
        return false;
    }
    m_damaged = false;
    return true;
}
