// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/ReleaseNotes.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// The last line of a version, as deb-changelog(5) has it; what stands before a version and behind
// it, as PackageKit's backend for apt has it.
constexpr auto endOfVersion = " -- "_L1;
constexpr auto beforeVersion = "== "_L1;
constexpr auto behindVersion = " =="_L1;
constexpr auto item = "* "_L1;

QString shown(const QString &line)
{
    const QString trimmed = line.trimmed();
    const qsizetype signs = beforeVersion.size() + behindVersion.size();
    if (trimmed.size() > signs && trimmed.startsWith(beforeVersion) &&
        trimmed.endsWith(behindVersion)) {
        return trimmed.sliced(beforeVersion.size(), trimmed.size() - signs);
    }
    if (trimmed.startsWith(item)) {
        return u"• "_s + trimmed.sliced(item.size());
    }
    return line;
}

} // namespace

QString releaseNotes(const QString &changelog)
{
    QStringList lines;
    for (const QString &line : changelog.split(u'\n')) {
        if (!line.startsWith(endOfVersion)) {
            lines << shown(line);
        }
    }
    return lines.join(u'\n');
}
