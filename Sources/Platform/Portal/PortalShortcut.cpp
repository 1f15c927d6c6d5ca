// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalShortcut.h"

#include "Platform/KeyTap.h"

#include <QDBusMetaType>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

void registerPortalShortcut()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

namespace {
struct Modifier
{
    quint64 flag;
    /// In the portal's terms.
    QString name;
    /// In descriptions for people, in lower case.
    QStringList words;
};

const QList<Modifier> &modifiers()
{
    static const QList<Modifier> all{
        {KeyFlags::control, u"CTRL"_s, {u"ctrl"_s, u"control"_s}},
        {KeyFlags::option, u"ALT"_s, {u"alt"_s}},
        {KeyFlags::shift, u"SHIFT"_s, {u"shift"_s}},
        {KeyFlags::command, u"LOGO"_s, {u"logo"_s, u"super"_s, u"meta"_s, u"windows"_s, u"mod4"_s}},
    };
    return all;
}
} // namespace

QList<PortalShortcut> portalShortcuts(const QVariant &answer)
{
    const auto argument = answer.value<QDBusArgument>();
    return argument.currentSignature() == u"a(sa{sv})" ? qdbus_cast<QList<PortalShortcut>>(argument)
                                                       : QList<PortalShortcut>();
}

QString portalTrigger(quint64 flags, const QString &keyName)
{
    QStringList parts;
    for (const Modifier &modifier : modifiers()) {
        if (flags & modifier.flag) {
            parts << modifier.name;
        }
    }
    return (parts << keyName).join(u'+');
}

bool describesTrigger(const QString &description, quint64 flags, const QString &keyName)
{
    static const QRegularExpression betweenWords(u"[^\\w]+"_s,
                                                 QRegularExpression::UseUnicodePropertiesOption);
    const QStringList words = description.toLower().split(betweenWords, Qt::SkipEmptyParts);
    return words.contains(keyName.toLower()) &&
           std::ranges::all_of(modifiers(), [&](const Modifier &modifier) {
               const bool isNamed = std::ranges::any_of(
                   modifier.words, [&](const QString &word) { return words.contains(word); });
               return isNamed == ((flags & modifier.flag) != 0);
           });
}
