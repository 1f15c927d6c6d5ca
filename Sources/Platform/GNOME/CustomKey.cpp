// SPDX-License-Identifier: MIT
#include "Platform/GNOME/CustomKey.h"

#include "Platform/Wayland/WaylandKeyboard.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <gio/gio.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr auto listSchema = "org.gnome.settings-daemon.plugins.media-keys";
constexpr auto listKey = "custom-keybindings";
constexpr auto entrySchema = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
/// Where an entry of ours may stand. More than one, as a user may have made the first their own.
constexpr std::array entryPaths{
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora/",
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora-2/",
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora-3/",
};

struct Unref
{
    void operator()(GSettings *settings) const { g_object_unref(settings); }
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
};
using Settings = std::unique_ptr<GSettings, Unref>;

/// Whether the schema is installed: GLib ends a program that asks for one that is not.
bool hasSchema(const char *name)
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    return source && std::unique_ptr<GSettingsSchema, Unref>(
                         g_settings_schema_source_lookup(source, name, TRUE));
}

QStringList entries(GSettings *list)
{
    QStringList paths;
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> values(g_settings_get_strv(list, listKey),
                                                                 g_strfreev);
    for (gchar **each = values.get(); *each; ++each) {
        paths << QString::fromUtf8(*each);
    }
    return paths;
}

void setEntries(GSettings *list, const QStringList &paths)
{
    QList<QByteArray> texts;
    QList<const char *> values;
    for (const QString &path : paths) {
        texts << path.toUtf8();
    }
    for (const QByteArray &text : texts) {
        values << text.constData();
    }
    values << nullptr;
    g_settings_set_strv(list, listKey, values.constData());
}

void set(GSettings *entry, const char *key, const QString &value)
{
    g_settings_set_string(entry, key, value.toUtf8().constData());
}

QString get(GSettings *entry, const char *key)
{
    const std::unique_ptr<gchar, decltype(&g_free)> value(g_settings_get_string(entry, key),
                                                          g_free);
    return QString::fromUtf8(value.get());
}

Settings entryAt(const char *path)
{
    return Settings(g_settings_new_with_path(entrySchema, path));
}

/// What an entry of ours runs. By this it is told from one that a user put in its place.
QString ourCommand()
{
    return u"gapplication action %1 capture"_s.arg(QGuiApplication::desktopFileName());
}

/// The first place where there is no entry but perhaps one of ours; null when users have them all.
const char *placeForOurs()
{
    const auto isFree = [](const char *path) {
        const QString command = get(entryAt(path).get(), "command");
        return command.isEmpty() || command == ourCommand();
    };
    const auto place = std::ranges::find_if(entryPaths, isFree);
    return place == entryPaths.end() ? nullptr : *place;
}

/// Takes every entry of ours out of the settings; writes nothing where there is none.
void removeOurs()
{
    const Settings list(g_settings_new(listSchema));
    QStringList paths = entries(list.get());
    bool wasListed = false;
    for (const char *path : entryPaths) {
        const Settings entry = entryAt(path);
        if (get(entry.get(), "command") != ourCommand()) {
            continue;
        }
        wasListed = paths.removeAll(QLatin1StringView(path)) > 0 || wasListed;
        for (const char *key : {"name", "command", "binding"}) {
            g_settings_reset(entry.get(), key);
        }
    }
    if (wasListed) {
        setEntries(list.get(), paths);
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
    return hasSchema(listSchema) && hasSchema(entrySchema);
}

bool CustomKey::setCombination(const KeyCombination &combination)
{
    const QString binding = accelerator(combination);
    const char *path = placeForOurs();
    if (!path) {
        return false;
    }
    const Settings entry = entryAt(path);
    set(entry.get(), "name",
        u"%1: %2"_s.arg(QCoreApplication::applicationName(),
                        QCoreApplication::translate("GlobalAccelKey", "Capture Text")));
    set(entry.get(), "command", ourCommand());
    set(entry.get(), "binding", binding);
    const Settings list(g_settings_new(listSchema));
    QStringList paths = entries(list.get());
    if (!paths.contains(QLatin1StringView(path))) {
        // Only now: the daemon reads the entry when it sees it listed.
        setEntries(list.get(), paths << QLatin1StringView(path));
    }
    g_settings_sync();
    return !binding.isEmpty();
}
