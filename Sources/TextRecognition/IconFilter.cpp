// SPDX-License-Identifier: MIT
#include "IconFilter.h"

#include "CodeMarks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace recognition {

namespace {

/// An icon stands at least this many letter heights from its text; the words of narrow type are
/// hardly farther apart.
constexpr double leastGap = 0.2;

/// A word of this many letters is taken for an icon only below this confidence: the longer it is
/// the rarer an icon is read so. Place 0 is for what has no letters.
constexpr std::array iconConfidence{92.0, 78.0, 78.0, 65.0, 50.0};

/// The same of what is higher than its line's letters, as icons are and words are not.
constexpr double tallConfidence = 88;

/// What remains of the line has to be surer by this.
constexpr double margin = 8;

/// Marks that may well stand before or after words by themselves.
bool isUsualMark(const QString &text)
{
    static const QString usual = QStringLiteral("-–—+=/&%$€£#<>:;.,…!?•·→←↑↓✓{}。、，：；！？");
    return text.size() == 1 && usual.contains(text);
}

/// How many brackets, quotation marks and comments of `text` are begun and not ended, or ended and
/// not begun.
int openPairs(const QString &text)
{
    int open = int(text.count(u'"') % 2);
    static const QStringList pairs{QStringLiteral("("),  QStringLiteral(")"), QStringLiteral("["),
                                   QStringLiteral("]"),  QStringLiteral("{"), QStringLiteral("}"),
                                   QStringLiteral("/*"), QStringLiteral("*/")};
    for (qsizetype i = 0; i < pairs.size(); i += 2) {
        open += int(std::abs(text.count(pairs[i]) - text.count(pairs[i + 1])));
    }
    return open;
}

/// Whether what stands on the page where `word` was read is higher than letters are.
bool isTall(const LineTask &task, const ReadWord &word)
{
    const double left = task.image().pageX(word.box.left);
    const double right = task.image().pageX(word.box.right);
    const int height = task.line().letterHeight;
    return std::ranges::any_of(task.line().marks, [&](const Mark &mark) {
        const double centre = mark.box.centreX2() / 2.0;
        return centre >= left && centre <= right && 5 * mark.box.height() >= 6 * height &&
               mark.box.width() <= 2 * mark.box.height();
    });
}

bool looksLikeIcon(const LineTask &task, const ReadWord &word, const Reading &rest)
{
    const LetterCount letters = countLetters(word.text, task.script);
    // A syllable says as much as two letters.
    const auto length =
        std::size_t(word.text.size() + (task.script == Script::Korean ? letters.own : 0));
    if (length >= iconConfidence.size()) {
        return false;
    }
    // A number may have a sign, a point or a unit's mark: "−18", "3.5", "45%".
    if (letters.digits > 0 && letters.digits == letters.all() &&
        2 * letters.digits >= int(length)) {
        return word.confidence < iconConfidence.back();
    }
    if (letters.all() == 0) {
        if (openPairs(task.best.text()) < openPairs(rest.text())) {
            return false;
        }
        return word.confidence < (isMarkOfCode(word.text)  ? 30
                                  : isUsualMark(word.text) ? 60
                                                           : iconConfidence[0]);
    }
    const double limit =
        length <= 3 && isTall(task, word) ? tallConfidence : iconConfidence[length];
    return word.confidence < std::min(limit, rest.confidence() - margin);
}

/// The width of the gap between the marks of the page nearest to `x`, a place between two words
/// of the prepared line, in letter heights.
double gapAt(const LineTask &task, double x)
{
    const TextLine &line = task.line();
    double widest = 0;
    int end = line.marks.front().box.right;
    for (const Mark &mark : line.marks) {
        const double centre = (end + mark.box.left) / 2.0;
        if (mark.box.left > end && std::abs(centre - x) <= line.letterHeight) {
            widest = std::max(widest, double(mark.box.left - end));
        }
        end = std::max(end, mark.box.right);
    }
    return widest / std::max(1, line.letterHeight);
}

} // namespace

Reading withoutIcons(const LineTask &task)
{
    Reading reading = task.best;
    for (const bool atRight : {false, true}) {
        if (reading.words.size() < 2) {
            break;
        }
        // By place, not by reading order: an icon is at the left or right end.
        const auto byPlace = [](const ReadWord &a, const ReadWord &b) {
            return a.box.centreX2() < b.box.centreX2();
        };
        const auto [left, right] =
            std::minmax_element(reading.words.cbegin(), reading.words.cend(), byPlace);
        const auto end = atRight ? right : left;
        Reading rest = reading;
        rest.words.removeAt(end - reading.words.cbegin());
        if (countLetters(rest.text(), task.script).all() < 2 || !looksLikeIcon(task, *end, rest)) {
            continue;
        }
        double inner = atRight ? 0 : 1e9;
        for (const ReadWord &word : std::as_const(rest.words)) {
            inner = atRight ? std::max(inner, double(word.box.right))
                            : std::min(inner, double(word.box.left));
        }
        const double outer = atRight ? end->box.left : end->box.right;
        if (gapAt(task, task.image().pageX((inner + outer) / 2)) >= leastGap) {
            reading = rest;
        }
    }
    return reading;
}

} // namespace recognition
