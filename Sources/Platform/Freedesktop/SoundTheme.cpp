// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/SoundTheme.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr auto lastTheme = "freedesktop"_L1;

/// Stands in a theme for a sound that is not to be heard (freedesktop.org's Sound Theme
/// Specification).
constexpr auto silence = ".disabled"_L1;

struct Theme
{
    QStringList folders;
    QStringList parents;
};

QString setting(const QString &fileName, const QString &key)
{
    const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, fileName);
    return path.isEmpty() ? QString() : QSettings(path, QSettings::IniFormat).value(key).toString();
}

/// The folders of `name` that hold sounds, those of the user before those of the system.
Theme theme(const QString &name)
{
    Theme theme;
    const QStringList roots = QStandardPaths::locateAll(
        QStandardPaths::GenericDataLocation, u"sounds/"_s + name, QStandardPaths::LocateDirectory);
    for (const QString &root : roots) {
        const QString index = root + u"/index.theme"_s;
        if (!QFileInfo(index).isFile()) {
            continue;
        }
        const QSettings settings(index, QSettings::IniFormat);
        theme.parents += settings.value(u"Sound Theme/Inherits"_s).toStringList();
        const QStringList names = settings.value(u"Sound Theme/Directories"_s).toStringList();
        QStringList others;
        for (const QString &folder : names) {
            // Two channels suit every device; "5.1" and the like come after.
            const QString profile = settings.value(folder + u"/OutputProfile"_s).toString();
            (profile == u"stereo" ? theme.folders : others).append(root + u'/' + folder);
        }
        theme.folders += others;
    }
    return theme;
}

} // namespace

QString SoundTheme::userTheme()
{
    // Plasma's, then that of the GTK desktops.
    const QString theme = setting(u"kdeglobals"_s, u"Sounds/Theme"_s);
    return theme.isEmpty() ? setting(u"gtk-3.0/settings.ini"_s, u"Settings/gtk-sound-theme-name"_s)
                           : theme;
}

QString SoundTheme::file(const QString &name, const QString &themeName)
{
    QStringList waiting = {themeName, lastTheme};
    QStringList seen;
    while (!waiting.isEmpty()) {
        const QString current = waiting.takeFirst();
        if (current.isEmpty() || current.contains(u'/') || seen.contains(current)) {
            continue;
        }
        seen.append(current);
        const Theme found = theme(current);
        for (const QString &folder : found.folders) {
            for (const QLatin1StringView suffix : {silence, ".oga"_L1, ".ogg"_L1, ".wav"_L1}) {
                const QString path = folder + u'/' + name + suffix;
                if (QFileInfo(path).isFile()) {
                    return path;
                }
            }
        }
        // Depth first, and "freedesktop" after all the others.
        waiting = found.parents + waiting;
        waiting.removeAll(lastTheme);
        waiting.append(lastTheme);
    }
    return {};
}

bool SoundTheme::isSilenced(const QString &filePath)
{
    return filePath.endsWith(silence);
}
