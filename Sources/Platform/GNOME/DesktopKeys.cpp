// SPDX-License-Identifier: MIT
#include "Platform/GNOME/DesktopKeys.h"

#include "Platform/GNOME/GnomeSettings.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {
/// Where GNOME and its parts keep lists of accelerators.
constexpr std::array schemas{
    GnomeSettings::mediaKeys,
    "org.gnome.desktop.wm.keybindings",
    "org.gnome.shell.keybindings",
    "org.gnome.mutter.keybindings",
    "org.gnome.mutter.wayland.keybindings",
};

/// GTK's names of modifiers, in lower case. No combination of ours has another one.
std::optional<quint64> modifierFlag(const QString &name)
{
    static const QHash<QString, quint64> flags{
        {u"primary"_s, KeyFlags::control}, {u"control"_s, KeyFlags::control},
        {u"ctrl"_s, KeyFlags::control},    {u"ctl"_s, KeyFlags::control},
        {u"alt"_s, KeyFlags::option},      {u"mod1"_s, KeyFlags::option},
        {u"shift"_s, KeyFlags::shift},     {u"shft"_s, KeyFlags::shift},
        {u"super"_s, KeyFlags::command},   {u"mod4"_s, KeyFlags::command},
    };
    const auto found = flags.constFind(name);
    return found == flags.cend() ? std::nullopt : std::optional(*found);
}

bool isInSchema(const char *schema, quint64 flags, const QStringList &keysyms)
{
    if (!GnomeSettings::isInstalled(schema)) {
        return false;
    }
    const GnomeSettings::Pointer settings = GnomeSettings::open(schema);
    const QStringList keys = GnomeSettings::listKeys(schema);
    return std::ranges::any_of(keys, [&](const QString &key) {
        const QStringList accelerators = GnomeSettings::strings(settings.get(), key);
        return std::ranges::any_of(
            accelerators, [&](const QString &each) { return isAccelerator(each, flags, keysyms); });
    });
}

/// Among the shortcuts that users make for commands.
bool isCustomKey(quint64 flags, const QStringList &keysyms, const QString &ourCommand)
{
    const QStringList paths = GnomeSettings::strings(
        GnomeSettings::open(GnomeSettings::mediaKeys).get(), GnomeSettings::customKeys);
    return std::ranges::any_of(paths, [&](const QString &path) {
        // GLib takes no other for a path, and ends a program that names one.
        if (!path.startsWith(u'/') || !path.endsWith(u'/') || path.contains(u"//")) {
            return false;
        }
        const GnomeSettings::Pointer entry = GnomeSettings::open(GnomeSettings::customKey, path);
        return GnomeSettings::string(entry.get(), u"command"_s) != ourCommand &&
               isAccelerator(GnomeSettings::string(entry.get(), u"binding"_s), flags, keysyms);
    });
}
} // namespace

bool isAccelerator(const QString &accelerator, quint64 flags, const QStringList &keysyms)
{
    quint64 held = 0;
    qsizetype at = 0;
    while (at < accelerator.size() && accelerator[at] == u'<') {
        const qsizetype end = accelerator.indexOf(u'>', at);
        const auto flag =
            end < 0 ? std::nullopt : modifierFlag(accelerator.mid(at + 1, end - at - 1).toLower());
        if (!flag) {
            return false;
        }
        held |= *flag;
        at = end + 1;
    }
    return held == flags && at < accelerator.size() &&
           keysyms.contains(accelerator.mid(at), Qt::CaseInsensitive);
}

bool isGnomeKey(const KeyCombination &combination, const QString &ourCommand)
{
    const QStringList keysyms = WaylandKeyboard().keysymNames(combination.keyCode);
    const quint64 flags = combination.flags & KeyFlags::mask;
    return std::ranges::any_of(
               schemas, [&](const char *each) { return isInSchema(each, flags, keysyms); }) ||
           isCustomKey(flags, keysyms, ourCommand);
}
