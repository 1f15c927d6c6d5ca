// SPDX-License-Identifier: MIT
#include "TextRepair.h"

namespace recognition {

namespace {

bool isDirectionMark(char32_t c)
{
    return c == 0x200e || c == 0x200f || (c >= 0x202a && c <= 0x202e) ||
           (c >= 0x2066 && c <= 0x2069);
}

/// Blanks between two wide characters are the model's, not the writer's.
QString withoutInnerBlanks(const QString &text)
{
    const QList<uint> characters = text.toUcs4();
    QString result;
    for (qsizetype i = 0; i < characters.size(); ++i) {
        const bool inner = characters[i] == U' ' && i > 0 && i + 1 < characters.size() &&
                           isWideEastAsian(characters[i - 1]) && isWideEastAsian(characters[i + 1]);
        if (!inner)
            result += QString::fromUcs4(reinterpret_cast<const char32_t *>(&characters[i]), 1);
    }
    return result;
}

} // namespace

QString repairedText(const Reading &reading, Script script)
{
    QString text;
    for (const char32_t c : reading.text().toUcs4()) {
        if (!isDirectionMark(c))
            text += QString::fromUcs4(&c, 1);
    }
    if (script == Script::Japanese || script == Script::SimplifiedHan ||
        script == Script::TraditionalHan)
        text = withoutInnerBlanks(text);
    return text.trimmed();
}

} // namespace recognition
