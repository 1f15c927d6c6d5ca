// SPDX-License-Identifier: MIT
#include "TextRepair.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>

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

/// Chinese sets its marks full width; the models give half of them back narrow. A narrow colon
/// before a blank or a number stays, as programs write it.
QString withWideMarks(QString text)
{
    static const QString narrow = QStringLiteral(",;?!");
    static const QString wide = QStringLiteral("，；？！");
    for (qsizetype i = 1; i < text.size(); ++i) {
        const qsizetype kind = narrow.indexOf(text[i]);
        const bool isLast = i + 1 == text.size();
        if (kind < 0 && !(text[i] == u':' && (isLast || isHan(text[i + 1].unicode()))))
            continue;
        const bool isSpaced = text[i - 1] == u' ' && i > 1;
        if (!isHan(text[isSpaced ? i - 2 : i - 1].unicode()))
            continue;
        text[i] = kind < 0 ? QChar(u'：') : wide[kind];
        while (i + 1 < text.size() && text[i + 1] == u' ')
            text.remove(i + 1, 1);
        if (isSpaced)
            text.remove(--i, 1);
    }
    return text;
}

/// Numbers joined by hyphens after Arabic letters are shown from right to left, group by group, and
/// read as shown; they are written the other way round.
QString withDatesInOrder(QString text)
{
    static const QRegularExpression joined(QStringLiteral("\\d+(?:-\\d+)+"));
    for (auto found = joined.match(text); found.hasMatch();
         found = joined.match(text, found.capturedEnd())) {
        const auto isLetter = [](QChar c) {
            return c.isLetter();
        };
        const auto before = std::make_reverse_iterator(text.cbegin() + found.capturedStart());
        const auto strong = std::find_if(before, text.crend(), isLetter);
        if (strong == text.crend() || !isArabic(strong->unicode()))
            continue;
        QStringList groups = found.captured().split(u'-');
        std::reverse(groups.begin(), groups.end());
        text.replace(found.capturedStart(), found.capturedLength(), groups.join(u'-'));
    }
    return text;
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
    if (script == Script::SimplifiedHan || script == Script::TraditionalHan)
        text = withWideMarks(text);
    if (script == Script::Arabic)
        text = withDatesInOrder(text);
    return text.trimmed();
}

} // namespace recognition
