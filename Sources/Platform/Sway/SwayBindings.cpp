// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayBindings.h"

#include "Platform/KeyTap.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Variables are replaced by the longest name that fits, as sway does.
QString withVariables(QString text, const QHash<QString, QString> &variables)
{
    QStringList names = variables.keys();
    std::ranges::sort(names, std::greater(), &QString::size);
    for (const QString &name : names) {
        text.replace(name, variables.value(name));
    }
    return text;
}

/// The flag of a modifier's name in sway's configuration; 0 for a key or another modifier.
quint64 flagOf(const QString &name)
{
    static const QHash<QString, quint64> flags{
        {u"shift"_s, KeyFlags::shift},     {u"ctrl"_s, KeyFlags::control},
        {u"control"_s, KeyFlags::control}, {u"alt"_s, KeyFlags::option},
        {u"mod1"_s, KeyFlags::option},     {u"mod4"_s, KeyFlags::command},
        {u"super"_s, KeyFlags::command},   {u"logo"_s, KeyFlags::command},
    };
    return flags.value(name, 0);
}

/// Whether "Mod4+Shift+o", bound by name or by number, is the key.
bool isSame(const QString &combination, const SwayKey &key)
{
    quint64 flags = 0;
    QString last;
    const QStringList parts = combination.toLower().split(u'+', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const quint64 flag = flagOf(part);
        flags |= flag;
        if (flag == 0) {
            last = part;
        }
    }
    return flags == key.flags &&
           (key.keysyms.contains(last) || last == QString::number(key.keycode));
}

/// The combination of a line that binds one, without the options before it; else empty.
QString boundBy(const QString &line)
{
    static const QRegularExpression binding(uR"(^(?:bindsym|bindcode)\s+((?:--\S+\s+)*)(\S+))"_s);
    const auto match = binding.match(line);
    // A binding to the release of the key leaves its press alone.
    return match.hasMatch() && !match.captured(1).contains("--release"_L1) ? match.captured(2)
                                                                           : QString();
}
} // namespace

QString swayKeyText(const SwayKey &key, const QStringList &locks)
{
    QStringList parts = locks;
    const auto add = [&](quint64 flag, const QString &name) {
        if (key.flags & flag) {
            parts << name;
        }
    };
    add(KeyFlags::shift, u"Shift"_s);
    add(KeyFlags::control, u"Ctrl"_s);
    add(KeyFlags::option, u"Mod1"_s);
    add(KeyFlags::command, u"Mod4"_s);
    parts << QString::number(key.keycode);
    return parts.join(u'+');
}

bool swayConfigBinds(const QString &config, const SwayKey &key)
{
    static const QRegularExpression assignment(uR"(^set\s+(\$\S+)\s+(.*)$)"_s);
    QHash<QString, QString> variables;
    // What opened each block around the line, such as "mode", "input" or "bindsym".
    QStringList blocks;
    QString text = config;
    text.replace("\\\n"_L1, " "_L1);
    const QStringList lines = text.split(u'\n');
    for (const QString &each : lines) {
        QString line = each.trimmed();
        if (line.startsWith(u'#') || line.isEmpty()) {
            continue;
        }
        if (const auto match = assignment.match(line); match.hasMatch()) {
            variables.insert(match.captured(1), withVariables(match.captured(2), variables));
            continue;
        }
        line = withVariables(line, variables);
        if (line == u"}") {
            if (!blocks.isEmpty()) {
                blocks.removeLast();
            }
            continue;
        }
        if (line.endsWith(u'{')) {
            blocks << line.chopped(1).trimmed();
            continue;
        }
        const bool isInBlock = !blocks.isEmpty();
        const bool isInBindings =
            isInBlock && blocks.size() == 1 && blocks.constLast().startsWith("bind"_L1);
        if (isInBindings) {
            line = blocks.constLast() + u' ' + line;
        } else if (isInBlock) {
            continue;
        }
        const QString combination = boundBy(line);
        if (!combination.isEmpty() && isSame(combination, key)) {
            return true;
        }
    }
    return false;
}
