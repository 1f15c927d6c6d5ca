// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/XdgAutostart.h"

#include "Platform/Freedesktop/SessionLaunch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// `text` as the value of a key of type string.
QString escaped(const QString &text)
{
    QString value;
    for (const QChar character : text) {
        switch (character.unicode()) {
        case u'\\':
            value += u"\\\\"_s;
            break;
        case u'\n':
            value += u"\\n"_s;
            break;
        case u'\r':
            value += u"\\r"_s;
            break;
        case u'\t':
            value += u"\\t"_s;
            break;
        default:
            value += character;
        }
    }
    // Leading blanks would be taken for those around the equals sign.
    if (value.startsWith(u' ')) {
        value.replace(0, 1, u"\\s"_s);
    }
    return value;
}

/// `program` as the command of an Exec key, before the escapes of every string.
QString quoted(const QString &program)
{
    QString argument;
    for (const QChar character : program) {
        if (character == u'%') {
            argument += u'%'; // doubled, else a field code
        } else if (u"\"`$\\"_s.contains(character)) {
            argument += u'\\';
        }
        argument += character;
    }
    return u'"' + argument + u'"';
}

} // namespace

XdgAutostart::XdgAutostart(Entry entry)
    : m_entry(std::move(entry))
{
}

QString XdgAutostart::filePath() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/autostart/"_s + m_entry.applicationId + u".desktop"_s;
}

QByteArray XdgAutostart::contents() const
{
    QString text = u"[Desktop Entry]\nType=Application\nVersion=1.4\n"_s;
    const auto add = [&text](QStringView key, const QString &value) {
        if (!value.isEmpty()) {
            text.append(key).append(u'=').append(escaped(value)).append(u'\n');
        }
    };
    add(u"Name", m_entry.name);
    add(u"Comment", m_entry.comment);
    add(u"Icon", m_entry.icon);
    // The desktop ignores the entry once the program is gone.
    add(u"TryExec", m_entry.executablePath);
    // GLib looks for a program before it reads the doubled per-cent sign of its name: the first
    // word of the command has none.
    QStringList command = commandAtLogin(m_entry.executablePath);
    command.last() = quoted(command.last());
    add(u"Exec", command.join(u' '));
    text += u"Terminal=false\nStartupNotify=false\n"_s;
    return text.toUtf8();
}

std::optional<QString> XdgAutostart::registerItem()
{
    if (!QDir::isAbsolutePath(m_entry.executablePath)) {
        return u"The program's own path is not known."_s;
    }
    const QString folder = QFileInfo(filePath()).path();
    if (!QDir().mkpath(folder)) {
        return u"The folder %1 could not be made."_s.arg(folder);
    }
    // The old entry stays whole until the new one is.
    QSaveFile file(filePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(contents()) < 0 || !file.commit()) {
        return u"%1 could not be written: %2."_s.arg(filePath(), file.errorString());
    }
    return std::nullopt;
}

bool XdgAutostart::launchedProgram() const
{
    return isLaunchedBySession();
}

std::optional<QString> XdgAutostart::unregisterItem()
{
    QFile file(filePath());
    const QFileInfo entry(filePath());
    // A dangling link "does not exist", but still is an entry.
    if (!entry.exists() && !entry.isSymLink()) {
        return std::nullopt;
    }
    if (!file.remove()) {
        return u"%1 could not be removed: %2."_s.arg(filePath(), file.errorString());
    }
    return std::nullopt;
}
