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
        if (!inner) {
            result += QString::fromUcs4(reinterpret_cast<const char32_t *>(&characters[i]), 1);
        }
    }
    return result;
}

/// Whether there is room for a full-width mark at the end of `word`, which takes up a whole letter:
/// before the next word, or, of a mark alone, between its neighbours. Nobody knows at the end.
bool hasRoomForWideMark(const QList<ReadWord> &words, qsizetype i)
{
    if (i + 1 == words.size()) {
        return true;
    }
    const ReadWord &word = words[i];
    const ReadWord &letters = word.text.size() > 1 || i == 0 ? word : words[i - 1];
    const int room = words[i + 1].box.left - letters.box.right;
    return 100 * room >= (word.text.size() > 1 ? 18 : 50) * letters.box.height();
}

/// Chinese sets its marks full width; the models give half of them back narrow. A narrow colon
/// before a blank or a number stays, as programs write it.
Reading withWideMarks(Reading reading)
{
    static const QString narrow = QStringLiteral(",;?!:");
    static const QString wide = QStringLiteral("，；？！：");
    QList<ReadWord> &words = reading.words;
    for (qsizetype i = 0; i < words.size(); ++i) {
        QString &text = words[i].text;
        const qsizetype kind = narrow.indexOf(text.back());
        const QString before = text.size() > 1 ? text : i > 0 ? words[i - 1].text : QString();
        if (kind < 0 || before.isEmpty() ||
            !isHan(before[text.size() > 1 ? before.size() - 2 : before.size() - 1].unicode())) {
            continue;
        }
        const bool beforeHan = i + 1 == words.size() || isHan(words[i + 1].text.front().unicode());
        if ((text.back() == u':' && !beforeHan) || !hasRoomForWideMark(words, i)) {
            continue;
        }
        text.back() = wide[kind];
        words[i].afterBlank = words[i].afterBlank && text.size() > 1;
        if (i + 1 < words.size()) {
            words[i + 1].afterBlank = false;
        }
    }
    return reading;
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
        if (strong == text.crend() || !isArabic(strong->unicode())) {
            continue;
        }
        QStringList groups = found.captured().split(u'-');
        std::reverse(groups.begin(), groups.end());
        text.replace(found.capturedStart(), found.capturedLength(), groups.join(u'-'));
    }
    return text;
}

/// A nought in numbers of source code, which with its dot or stroke is read as O or @.
QString withNoughts(QString text)
{
    static const QRegularExpression hexadecimal(
        QStringLiteral("(?<![\\p{L}\\p{N}])[O@][xX](?=[\\da-fA-F]*\\d)"));
    static const QRegularExpression escaped(QStringLiteral("(?<=\\\\)[O@](?=['\"’”])"));
    static const QRegularExpression index(QStringLiteral("(?<=[\\p{L}\\d_]\\[)[O@](?=\\])"));
    static const QRegularExpression operand(
        QStringLiteral("(?<=[<>=?+*/-] )[O@](?=;|\\)| &&| \\|\\|)"));
    text.replace(operand, QStringLiteral("0"));
    text.replace(hexadecimal, QStringLiteral("0x"));
    text.replace(escaped, QStringLiteral("0"));
    if (!text.contains(QStringLiteral("${"))) {
        text.replace(index, QStringLiteral("0"));
    }
    return text;
}

} // namespace

QString repairedText(const Reading &reading, Script script)
{
    QString text;
    const bool isChinese = script == Script::SimplifiedHan || script == Script::TraditionalHan;
    const QString read = isChinese ? withWideMarks(reading).text() : reading.text();
    for (const char32_t c : read.toUcs4()) {
        if (!isDirectionMark(c)) {
            text += QString::fromUcs4(&c, 1);
        }
    }
    if (script == Script::Japanese || script == Script::SimplifiedHan ||
        script == Script::TraditionalHan) {
        text = withoutInnerBlanks(text);
    }
    if (script == Script::Arabic) {
        text = withDatesInOrder(text);
    }
    // Three dots of which a model took two together.
    text.replace(QStringLiteral(".…"), QStringLiteral("..."));
    text.replace(QStringLiteral("…."), QStringLiteral("..."));
    return withNoughts(text.trimmed());
}

} // namespace recognition
