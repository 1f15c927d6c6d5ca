// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <gio/gio.h>
#include <memory>

/// GSettings in Qt's words. A schema that is named has to be installed, and a key to be in it and
/// of the type that is asked for: GLib ends the program otherwise.
namespace GnomeSettings {
/// The settings daemon's keys, the list of the user's own shortcuts among them.
inline constexpr auto mediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
inline const QString customKeys = QStringLiteral("custom-keybindings");
/// One of those, at a path of its own.
inline constexpr auto customKey = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";

struct Unref
{
    void operator()(GSettings *settings) const { g_object_unref(settings); }
};
using Pointer = std::unique_ptr<GSettings, Unref>;

bool isInstalled(const char *schema);
/// Whether the schema is installed and has this key, of whatever type.
bool hasKey(const char *schema, const char *key);
Pointer open(const char *schema);
Pointer open(const char *schema, const QString &path);

/// The keys of an installed schema that hold lists of texts.
QStringList listKeys(const char *schema);

QStringList strings(GSettings *settings, const QString &key);
void setStrings(GSettings *settings, const QString &key, const QStringList &values);
QString string(GSettings *settings, const QString &key);
void setString(GSettings *settings, const QString &key, const QString &value);
} // namespace GnomeSettings
