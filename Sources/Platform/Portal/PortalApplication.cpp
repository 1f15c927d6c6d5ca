// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalApplication.h"

#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString portalApplicationId(const QString &unit)
{
    // As systemd's "Desktop Environments" names them: app[-<launcher>]-<id>-<random>.scope or
    // .slice, and app[-<launcher>]-<id>[@<random>].service; within a part a dash is "\x2d".
    static const QRegularExpression scope(
        u"^app-(?:[A-Za-z0-9]+-)?([^-]+)-[A-Za-z0-9]*\\.(?:scope|slice)$"_s);
    static const QRegularExpression service(
        u"^app-(?:[A-Za-z0-9]+-)?([^-@]+)(?:@[^.]*)?\\.service$"_s);
    for (const QRegularExpression &pattern : {scope, service}) {
        if (const auto match = pattern.match(unit); match.hasMatch()) {
            return match.captured(1).replace(u"\\x2d"_s, u"-"_s);
        }
    }
    return {};
}

QString portalApplicationId()
{
    QFile file(u"/proc/self/cgroup"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString group = QString::fromUtf8(file.readAll()).trimmed();
    return portalApplicationId(group.section(u'/', -1));
}
