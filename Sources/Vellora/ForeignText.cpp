// SPDX-License-Identifier: MIT
#include "ForeignText.h"

#include <algorithm>

namespace {
/// Embeddings, overrides and isolates: what a text needs to show another order than it has.
bool turnsDirection(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool isShown(QChar character)
{
    if (character == u'\n' || character == u'\t') {
        return true;
    }
    return character.category() != QChar::Other_Control && !turnsDirection(character);
}
} // namespace

QString foreignText(const QString &text, qsizetype limit)
{
    QString shown;
    shown.reserve(std::min(text.size(), limit));
    bool isCut = false;
    for (const QChar character : text) {
        if (!isShown(character)) {
            continue;
        }
        if (shown.size() == limit) {
            isCut = true;
            break;
        }
        shown += character;
    }
    if (isCut) {
        // Not half of a pair.
        if (shown.back().isHighSurrogate()) {
            shown.chop(1);
        }
        shown += u'…';
    }
    return shown.trimmed();
}

QString foreignLine(const QString &text, qsizetype limit)
{
    return foreignText(text, limit).simplified();
}
