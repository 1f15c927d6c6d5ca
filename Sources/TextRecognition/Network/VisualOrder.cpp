// SPDX-License-Identifier: MIT
#include "VisualOrder.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

enum class Direction { None, LeftToRight, RightToLeft, Both };

bool isRightToLeft(char32_t letter)
{
    const QChar::Direction direction = QChar::direction(letter);
    return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
}

Direction directionOf(const QString &word)
{
    bool left = false;
    bool right = false;
    for (const char32_t letter : word.toUcs4()) {
        left = left || QChar::direction(letter) == QChar::DirL;
        right = right || isRightToLeft(letter);
    }
    return left && right ? Direction::Both
           : left        ? Direction::LeftToRight
           : right       ? Direction::RightToLeft
                         : Direction::None;
}

bool isNumberMark(QChar::Direction direction)
{
    return direction == QChar::DirES || direction == QChar::DirCS || direction == QChar::DirET;
}

bool isPerCent(uint letter)
{
    return letter == U'%' || letter == U'\u066a';
}

/// Which letters of a word among words from right to left are read from the left: runs of Latin
/// letters and digits, with what stands between them, and the marks that belong to a number. A per
/// cent sign left of its number is read after it, because it is drawn there behind Arabic letters.
QList<bool> leftToRightLetters(const QList<uint> &letters)
{
    const qsizetype count = letters.size();
    QList<QChar::Direction> directions;
    for (const uint letter : letters) {
        directions.append(QChar::direction(letter));
    }
    for (qsizetype i = 0; i + 2 < count; ++i) {
        if (directions[i] == QChar::DirEN && directions[i + 2] == QChar::DirEN &&
            isNumberMark(directions[i + 1])) {
            directions[i + 1] = QChar::DirEN;
        }
    }
    for (qsizetype i = 1; i < count; ++i) {
        if (directions[i] == QChar::DirET && directions[i - 1] == QChar::DirEN) {
            directions[i] = QChar::DirEN;
        }
    }
    for (qsizetype i = count - 1; i-- > 0;) {
        if (directions[i] == QChar::DirET && directions[i + 1] == QChar::DirEN &&
            !isPerCent(letters[i])) {
            directions[i] = QChar::DirEN;
        }
    }
    QList<bool> isLeft(count, false);
    for (qsizetype i = 0; i < count;) {
        const auto isOfRun = [&](qsizetype at) {
            return directions[at] == QChar::DirL || directions[at] == QChar::DirEN ||
                   directions[at] == QChar::DirAN;
        };
        if (!isOfRun(i)) {
            ++i;
            continue;
        }
        qsizetype end = i + 1;
        for (qsizetype at = end; at < count; ++at) {
            if (isOfRun(at)) {
                end = at + 1;
            } else if (directions[at] != QChar::DirCS && directions[at] != QChar::DirON) {
                break;
            }
        }
        std::fill(isLeft.begin() + i, isLeft.begin() + end, true);
        i = end;
    }
    return isLeft;
}

bool hasOwnDirection(QChar c)
{
    const QChar::Direction direction = c.direction();
    return direction == QChar::DirL || direction == QChar::DirEN || isRightToLeft(c.unicode());
}

/// Marks at the ends of words from left to right among those from right to left are drawn with the
/// latter: what stands left of them follows them, and a bracket right of them comes before. `left`
/// and `right` are the words at the ends, which may be one.
void turnEnds(QString &left, QString &right)
{
    qsizetype first = 0;
    while (first < left.size() && !hasOwnDirection(left[first])) {
        ++first;
    }
    if (first == left.size()) {
        return;
    }
    QString after = left.first(first);
    std::reverse(after.begin(), after.end());
    left.remove(0, first);
    qsizetype last = right.size();
    while (last > 0 && right[last - 1].hasMirrored()) {
        --last;
    }
    QString before = right.sliced(last);
    std::reverse(before.begin(), before.end());
    right.truncate(last);
    right += after;
    left.prepend(before);
}

QString turned(const QString &word)
{
    const QList<uint> letters = word.toUcs4();
    const QList<bool> isLeft = leftToRightLetters(letters);
    QString text;
    for (qsizetype i = letters.size(); i-- > 0;) {
        qsizetype first = i;
        while (isLeft[i] && first > 0 && isLeft[first - 1]) {
            --first;
        }
        for (qsizetype at = first; at <= i; ++at) {
            const char32_t letter = letters[at];
            text += QString::fromUcs4(&letter, 1);
        }
        i = first;
    }
    return text;
}

/// Latin names in Arabic text are common, the reverse is not: a line with so many Latin letters to
/// an Arabic one may still be an Arabic line.
constexpr int latinPerArabic = 3;

int lettersOf(const QList<QString> &words, bool isRight)
{
    int count = 0;
    for (const QString &word : words) {
        for (const QChar c : word) {
            count += isRight ? isRightToLeft(c.unicode()) : c.direction() == QChar::DirL;
        }
    }
    return count;
}

bool isRightToLeftLine(const QList<QString> &words, const QList<Direction> &directions)
{
    if (directions.first() == Direction::RightToLeft) {
        return true;
    }
    if (directions.last() == Direction::LeftToRight) {
        return false;
    }
    return latinPerArabic * lettersOf(words, true) >= lettersOf(words, false);
}

/// Whether a Latin word that stands left of a number among words from right to left follows it, as
/// in "12 ms"; others come before it, as in "Python 3". Both look the same.
bool isUnit(const QString &word)
{
    static const QSet<QString> units{
        u"B"_s,    u"KB"_s,   u"MB"_s, u"GB"_s,  u"TB"_s,  u"KiB"_s, u"MiB"_s, u"GiB"_s, u"kbps"_s,
        u"Mbps"_s, u"Gbps"_s, u"ms"_s, u"s"_s,   u"min"_s, u"h"_s,   u"Hz"_s,  u"kHz"_s, u"MHz"_s,
        u"GHz"_s,  u"px"_s,   u"pt"_s, u"dpi"_s, u"fps"_s, u"mm"_s,  u"cm"_s,  u"m"_s,   u"km"_s,
        u"g"_s,    u"kg"_s,   u"mg"_s, u"W"_s,   u"kW"_s,  u"V"_s,   u"mAh"_s, u"dB"_s,  u"K"_s};
    return units.contains(word);
}

bool isNumber(const QString &word)
{
    return std::any_of(word.cbegin(), word.cend(),
                       [](QChar c) { return c.direction() == QChar::DirEN; });
}

/// Numbers right of Latin words go on with them.
void joinNumbers(const QList<QString> &words, QList<Direction> &directions)
{
    for (qsizetype i = 1; i < words.size(); ++i) {
        const bool isAloneUnit =
            isUnit(words[i - 1]) && (i < 2 || directions[i - 2] != Direction::LeftToRight);
        if (directions[i] == Direction::None && directions[i - 1] == Direction::LeftToRight &&
            isNumber(words[i]) && !isAloneUnit) {
            directions[i] = Direction::LeftToRight;
        }
    }
}

} // namespace

QList<int> toReadingOrder(QList<QString> &words)
{
    QList<Direction> directions;
    bool hasRightToLeft = false;
    for (const QString &word : words) {
        directions.append(directionOf(word));
        hasRightToLeft = hasRightToLeft || directions.last() == Direction::RightToLeft ||
                         directions.last() == Direction::Both;
    }
    QList<int> order;
    const auto count = int(words.size());
    if (!hasRightToLeft) {
        for (int i = 0; i < count; ++i) {
            order.append(i);
        }
        return order;
    }

    const bool isRight = isRightToLeftLine(words, directions);
    const Direction other = isRight ? Direction::LeftToRight : Direction::RightToLeft;
    const Direction own = isRight ? Direction::RightToLeft : Direction::LeftToRight;
    const int step = isRight ? -1 : 1;
    const int end = isRight ? -1 : count;
    if (isRight) {
        joinNumbers(words, directions);
        // What has no direction of its own and stands right of a Latin word goes on with it.
        int last = count - 1;
        while (last > 0 && directions[last] == Direction::None) {
            --last;
        }
        if (directions[last] == Direction::LeftToRight) {
            std::fill(directions.begin() + last, directions.end(), Direction::LeftToRight);
        }
    }
    for (int i = isRight ? count - 1 : 0; i != end; i += step) {
        int last = i;
        if (directions[i] == other) {
            for (int at = i; at != end && directions[at] != own; at += step) {
                last = directions[at] == other ? at : last;
            }
        }
        if (isRight && directions[i] == other) {
            turnEnds(words[last], words[i]);
        }
        const bool isTurned =
            isRight ? last == i && directions[i] != other : directions[i] == other;
        for (int at = last;; at -= step) {
            if (isTurned) {
                words[at] = turned(words[at]);
            }
            order.append(at);
            if (at == i) {
                break;
            }
        }
        i = last;
    }
    return order;
}

} // namespace recognition
