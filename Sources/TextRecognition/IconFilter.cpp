// SPDX-License-Identifier: MIT
#include "IconFilter.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// An icon stands at least this many letter heights from its text; words are closer together in
/// most type.
constexpr double leastGap = 0.38;

/// An icon is read as at most this many characters.
constexpr int mostCharacters = 4;

/// Words of letters are taken for icons only below this confidence, and only if what remains is
/// surer by the margin; lone marks may be surer.
constexpr double weakLetters = 75;
constexpr double weakMarks = 92;
constexpr double margin = 8;

/// Marks that may well stand before or after words by themselves.
bool isUsualMark(const QString &text)
{
    static const QString usual = QStringLiteral("-–—+=*/&%$€£#<>:;.,…!?•·→←↑↓✓");
    return text.size() == 1 ? usual.contains(text) && text != QStringLiteral("*") : false;
}

bool looksLikeIcon(const ReadWord &word, const Reading &rest, Script script)
{
    if (word.text.size() > mostCharacters)
        return false;
    const LetterCount letters = countLetters(word.text, script);
    const bool onlyDigits = letters.digits > 0 && letters.digits == int(word.text.size());
    if (onlyDigits)
        return word.confidence < 50;
    if (letters.all() == 0)
        return !isUsualMark(word.text) ? word.confidence < weakMarks : word.confidence < 60;
    return word.confidence < std::min(weakLetters, rest.confidence() - margin);
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
        if (mark.box.left > end && std::abs(centre - x) <= line.letterHeight)
            widest = std::max(widest, double(mark.box.left - end));
        end = std::max(end, mark.box.right);
    }
    return widest / std::max(1, line.letterHeight);
}

} // namespace

Reading withoutIcons(const LineTask &task)
{
    Reading reading = task.best;
    for (const bool atRight : {false, true}) {
        if (reading.words.size() < 2)
            break;
        // By place, not by reading order: an icon is at the left or right end.
        const auto byPlace = [](const ReadWord &a, const ReadWord &b) {
            return a.box.centreX2() < b.box.centreX2();
        };
        const auto [left, right] =
            std::minmax_element(reading.words.cbegin(), reading.words.cend(), byPlace);
        const auto end = atRight ? right : left;
        Reading rest = reading;
        rest.words.removeAt(end - reading.words.cbegin());
        if (countLetters(rest.text(), task.script).all() < 2 ||
            !looksLikeIcon(*end, rest, task.script))
            continue;
        double inner = atRight ? 0 : 1e9;
        for (const ReadWord &word : std::as_const(rest.words)) {
            inner = atRight ? std::max(inner, double(word.box.right))
                            : std::min(inner, double(word.box.left));
        }
        const double outer = atRight ? end->box.left : end->box.right;
        if (gapAt(task, task.image().pageX((inner + outer) / 2)) >= leastGap)
            reading = rest;
    }
    return reading;
}

} // namespace recognition
