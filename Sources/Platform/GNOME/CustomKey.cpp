// SPDX-License-Identifier: MIT
#include "Platform/GNOME/CustomKey.h"

#include "Platform/CaptureCommand.h"
#include "Platform/GNOME/DesktopKeys.h"
#include "Platform/GNOME/GnomeSettings.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Where an entry of ours may stand. More than one, as a user may have made the first their own.
const QStringList entryPaths{
    u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora/"_s,
    u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora-2/"_s,
    u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora-3/"_s,
};

GnomeSettings::Pointer entryAt(const QString &path)
{
    return GnomeSettings::open(GnomeSettings::customKey, path);
}

/// The first place where there is no entry but perhaps one of ours; empty when users have them all.
QString placeForOurs()
{
    const auto isFree = [](const QString &path) {
        // By its command ours is told from one that a user put in its place.
        const QString command = GnomeSettings::string(entryAt(path).get(), u"command"_s);
        return command.isEmpty() || command == captureCommand();
    };
    const auto place = std::ranges::find_if(entryPaths, isFree);
    return place == entryPaths.end() ? QString() : *place;
}

/// Takes every entry of ours out of the settings; writes nothing where there is none.
void removeOurs()
{
    const GnomeSettings::Pointer list = GnomeSettings::open(GnomeSettings::mediaKeys);
    QStringList paths = GnomeSettings::strings(list.get(), GnomeSettings::customKeys);
    bool wasListed = false;
    for (const QString &path : entryPaths) {
        const GnomeSettings::Pointer entry = entryAt(path);
        if (GnomeSettings::string(entry.get(), u"command"_s) != captureCommand()) {
            continue;
        }
        wasListed = paths.removeAll(path) > 0 || wasListed;
        for (const char *key : {"name", "command", "binding"}) {
            g_settings_reset(entry.get(), key);
        }
    }
    if (wasListed) {
        GnomeSettings::setStrings(list.get(), GnomeSettings::customKeys, paths);
    }
    g_settings_sync();
}

/// As GTK writes it, such as "<Shift><Super>o"; empty for a key without a name.
QString accelerator(const KeyCombination &combination)
{
    const QString key = WaylandKeyboard().keysymNames(combination.keyCode).value(0);
    QString text;
    const auto add = [&](quint64 flag, const QString &name) {
        text += combination.flags & flag ? name : QString();
    };
    add(KeyFlags::control, u"<Control>"_s);
    add(KeyFlags::option, u"<Alt>"_s);
    add(KeyFlags::shift, u"<Shift>"_s);
    add(KeyFlags::command, u"<Super>"_s);
    return key.isEmpty() ? QString() : text + key;
}
} // namespace

CustomKey::~CustomKey()
{
    removeOurs();
}

void CustomKey::removeLeftover()
{
    removeOurs();
}

bool CustomKey::isOffered()
{
    return GnomeSettings::isInstalled(GnomeSettings::mediaKeys) &&
           GnomeSettings::isInstalled(GnomeSettings::customKey);
}

bool CustomKey::setCombination(const KeyCombination &combination)
{
    const QString binding = accelerator(combination);
    const QString path = placeForOurs();
    if (path.isEmpty() || isGnomeKey(combination, captureCommand())) {
        removeOurs();
        return false;
    }
    const GnomeSettings::Pointer entry = entryAt(path);
    GnomeSettings::setString(
        entry.get(), u"name"_s,
        u"%1: %2"_s.arg(QCoreApplication::applicationName(),
                        QCoreApplication::translate("GlobalAccelKey", "Capture Text")));
    GnomeSettings::setString(entry.get(), u"command"_s, captureCommand());
    GnomeSettings::setString(entry.get(), u"binding"_s, binding);
    const GnomeSettings::Pointer list = GnomeSettings::open(GnomeSettings::mediaKeys);
    const QStringList paths = GnomeSettings::strings(list.get(), GnomeSettings::customKeys);
    if (!paths.contains(path)) {
        // Only now: the daemon reads the entry when it sees it listed.
        GnomeSettings::setStrings(list.get(), GnomeSettings::customKeys, paths + QStringList{path});
    }
    g_settings_sync();
    return !binding.isEmpty();
}
