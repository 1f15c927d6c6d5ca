// SPDX-License-Identifier: MIT
#include "Platform/GNOME/GnomeSettings.h"

#include <QList>

namespace {
struct SchemaUnref
{
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
    void operator()(GSettingsSchemaKey *key) const { g_settings_schema_key_unref(key); }
};
using Schema = std::unique_ptr<GSettingsSchema, SchemaUnref>;
using SchemaKey = std::unique_ptr<GSettingsSchemaKey, SchemaUnref>;
using Texts = std::unique_ptr<gchar *, decltype(&g_strfreev)>;

Schema schemaNamed(const char *name)
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    return Schema(source ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr);
}

QStringList fromTexts(gchar **texts)
{
    QStringList list;
    for (gchar **each = texts; *each; ++each) {
        list << QString::fromUtf8(*each);
    }
    return list;
}
} // namespace

bool GnomeSettings::isInstalled(const char *schema)
{
    return schemaNamed(schema) != nullptr;
}

bool GnomeSettings::hasKey(const char *schema, const char *key)
{
    const Schema found = schemaNamed(schema);
    return found && g_settings_schema_has_key(found.get(), key);
}

GnomeSettings::Pointer GnomeSettings::open(const char *schema)
{
    return Pointer(g_settings_new(schema));
}

GnomeSettings::Pointer GnomeSettings::open(const char *schema, const QString &path)
{
    return Pointer(g_settings_new_with_path(schema, path.toUtf8().constData()));
}

QStringList GnomeSettings::listKeys(const char *schema)
{
    const Schema installed = schemaNamed(schema);
    const Texts names(g_settings_schema_list_keys(installed.get()), g_strfreev);
    QStringList keys;
    for (gchar **name = names.get(); *name; ++name) {
        const SchemaKey key(g_settings_schema_get_key(installed.get(), *name));
        if (g_variant_type_equal(g_settings_schema_key_get_value_type(key.get()),
                                 G_VARIANT_TYPE_STRING_ARRAY)) {
            keys << QString::fromUtf8(*name);
        }
    }
    return keys;
}

QStringList GnomeSettings::strings(GSettings *settings, const QString &key)
{
    const Texts values(g_settings_get_strv(settings, key.toUtf8().constData()), g_strfreev);
    return fromTexts(values.get());
}

void GnomeSettings::setStrings(GSettings *settings, const QString &key, const QStringList &values)
{
    QList<QByteArray> texts;
    QList<const char *> pointers;
    for (const QString &value : values) {
        texts << value.toUtf8();
    }
    for (const QByteArray &text : texts) {
        pointers << text.constData();
    }
    pointers << nullptr;
    g_settings_set_strv(settings, key.toUtf8().constData(), pointers.constData());
}

QString GnomeSettings::string(GSettings *settings, const QString &key)
{
    const std::unique_ptr<gchar, decltype(&g_free)> value(
        g_settings_get_string(settings, key.toUtf8().constData()), g_free);
    return QString::fromUtf8(value.get());
}

void GnomeSettings::setString(GSettings *settings, const QString &key, const QString &value)
{
    g_settings_set_string(settings, key.toUtf8().constData(), value.toUtf8().constData());
}
