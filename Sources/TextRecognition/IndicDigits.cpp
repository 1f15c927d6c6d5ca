// SPDX-License-Identifier: MIT
#include "IndicDigits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// In letter heights, the widest gap within a number and the narrowest beside it: a blank is at
/// least as wide, and the letters of a word stand closer.
constexpr double widestGap = 0.6;
constexpr double narrowestBlank = 0.2;

/// The odds that one glyph may give or take, that one with a double in other writing may give
/// (full stops, `ا`, `ه`, `o`, `V` look like digits), that an enclosing bracket and another mark
/// give: every text has those, but they must not be taken in without need.
constexpr double mostOdds = 3;
constexpr double mostDoubleOdds = 1;
constexpr double bracketOdds = 0.3;
constexpr double markOdds = -0.1;

/// What such a double gives at least if it is so likely: letters are more frequent, but do not
/// stand alone beside numbers.
constexpr double leastDouble = 0.1;
constexpr double leastDoubleOdds = 0.3;

/// What a glyph gives more if it was parted from another: both look likelier than the two as one,
/// though a mark among them gives little.
constexpr double partedOdds = 0.2;

/// With less it is no number.
constexpr double leastOdds = 1.5;

/// A glyph and what it most likely is, if it is part of a number.
struct ToldGlyph
{
    Box box;
    char16_t character = 0;
    /// As a logarithm.
    double odds = 0;
};

using Told = std::vector<ToldGlyph>;

bool isOpening(char16_t c)
{
    return c == u'(' || c == u'[';
}

bool isClosing(char16_t c)
{
    return c == u')' || c == u']';
}

bool hasDouble(char16_t c)
{
    return c == u'٠' || c == u'١' || c == u'٥' || c == u'٧';
}

double mostOddsOf(char16_t c)
{
    const bool isMark = c != u'٪' && !QChar::isDigit(c);
    return isOpening(c) || isClosing(c) ? bracketOdds
           : isMark                     ? markOdds
           : hasDouble(c)               ? mostDoubleOdds
                                        : mostOdds;
}

Told toldGlyphs(const GreyImage &picture, int letters, bool isParted)
{
    Told told;
    for (const PlainGlyph &glyph : plainGlyphs(picture, letters, isParted)) {
        const DigitShares shares = digitShares(glyph.features);
        const auto end = shares.begin() + std::ptrdiff_t(digitAndMarkCount);
        const auto best = std::max_element(shares.begin(), end);
        const char16_t character = digitClasses[std::size_t(best - shares.begin())];
        const float other = std::accumulate(end, shares.end(), 1e-6F);
        const double least =
            hasDouble(character) && *best > leastDouble ? leastDoubleOdds : -mostOdds;
        told.push_back(
            {glyph.box, character,
             std::clamp(double(std::log((*best + 1e-6F) / other)), least, mostOddsOf(character)) +
                 (glyph.isParted ? partedOdds : 0)});
    }
    return told;
}

/// The gap between a glyph and the one before it; endless at the ends of the line.
int gapBefore(const Told &glyphs, std::size_t i)
{
    constexpr int endless = 1 << 20;
    return i == 0 || i == glyphs.size() ? endless : glyphs[i].box.left - glyphs[i - 1].box.right;
}

/// Slashes stand between digits, per cent signs do not.
QString withSigns(QString seen)
{
    for (qsizetype i = 0; i < seen.size(); ++i) {
        const bool after = i > 0 && seen[i - 1].isDigit();
        const bool before = i + 1 < seen.size() && seen[i + 1].isDigit();
        if (seen[i] == u'٪' && before && after) {
            seen[i] = u'/';
        } else if (seen[i] == u'/' && before && !after) {
            seen[i] = u'٪';
        }
    }
    return seen;
}

/// All numbers that begin with the glyph `first`.
void addNumbers(const Told &glyphs, std::size_t first, int letters,
                std::vector<IndicNumber> &numbers)
{
    IndicNumber number{glyphs[first].box, {}, 0};
    QString seen;
    bool hasDigit = false;
    for (std::size_t i = first; i < glyphs.size(); ++i) {
        const ToldGlyph &glyph = glyphs[i];
        if (i > first &&
            (gapBefore(glyphs, i) > widestGap * letters || isOpening(glyph.character))) {
            return;
        }
        number.box.unite(glyph.box);
        number.odds += glyph.odds;
        seen += QChar(glyph.character);
        hasDigit = hasDigit || QChar::isDigit(glyph.character);
        if (hasDigit && number.odds >= leastOdds &&
            gapBefore(glyphs, i + 1) >= narrowestBlank * letters) {
            number.text = writtenNumber(withSigns(seen));
            numbers.push_back(number);
        }
        if (isClosing(glyph.character)) {
            return;
        }
    }
}

} // namespace

QString writtenNumber(const QString &seen)
{
    static const QString brackets = u"()[]"_s;
    static const QString mirrored = u")(]["_s;
    const auto isDigit = [&seen](qsizetype at) {
        return at >= 0 && at < seen.size() && seen[at].isDigit();
    };
    const auto isOfGroup = [&](qsizetype at) {
        return isDigit(at) || (isDigit(at - 1) && isDigit(at + 1) && u"/.:"_s.contains(seen[at]));
    };
    QString written;
    for (qsizetype last = seen.size(); last > 0;) {
        qsizetype first = last - 1;
        while (isOfGroup(last - 1) && first > 0 && isOfGroup(first - 1)) {
            --first;
        }
        const qsizetype bracket = brackets.indexOf(seen[first]);
        written += bracket < 0 ? seen.mid(first, last - first) : QString(mirrored[bracket]);
        last = first;
    }
    return written;
}

std::vector<IndicNumber> indicNumbers(const GreyImage &picture, int letters)
{
    std::vector<IndicNumber> found;
    for (const bool isParted : {false, true}) {
        const Told glyphs = toldGlyphs(picture, letters, isParted);
        for (std::size_t i = 0; i < glyphs.size(); ++i) {
            if (gapBefore(glyphs, i) >= narrowestBlank * letters) {
                addNumbers(glyphs, i, letters, found);
            }
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const IndicNumber &a, const IndicNumber &b) { return a.odds > b.odds; });
    std::vector<IndicNumber> numbers;
    for (const IndicNumber &number : found) {
        if (std::none_of(numbers.begin(), numbers.end(), [&number](const IndicNumber &other) {
                return horizontalOverlap(number.box, other.box) > 0;
            })) {
            numbers.push_back(number);
        }
    }
    std::sort(numbers.begin(), numbers.end(),
              [](const IndicNumber &a, const IndicNumber &b) { return a.box.left < b.box.left; });
    return numbers;
}

} // namespace recognition
