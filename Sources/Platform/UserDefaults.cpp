// SPDX-License-Identifier: MIT
#include "Platform/UserDefaults.h"

#include <QFile>
#include <QStandardPaths>

#include <chrono>
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

void UserDefaults::set(const QString &key, const QString &text)
{
    write(key, text);
}

void UserDefaults::set(const QString &key, bool value)
{
    // As text, so that it reads the same before and after a round through the file.
    write(key, value ? u"true"_s : u"false"_s);
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

void UserDefaults::write(const QString &key, const QVariant &value)
{
    keepDamagedFile();
    m_gathered.remove(key);
    m_file.setValue(key, value);
    // At once: a session may end without warning.
    m_file.sync();
    if (m_file.status() == QSettings::AccessError) {
        if (const auto tell = std::exchange(writeDidFail, nullptr)) {
            tell();
        }
    }
}

void UserDefaults::keepDamagedFile()
{
    if (!std::exchange(m_damaged, false)) {
        return;
    }
    const QString copy = filePath() + u".damaged"_s;
    QFile::remove(copy);
    QFile::copy(filePath(), copy);
}
