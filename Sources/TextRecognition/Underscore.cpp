// SPDX-License-Identifier: MIT
#include "Underscore.h"

#include "LineImage.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// In letter heights. An underscore is as wide as a letter, about 0.5 in proportional and 0.8 in
/// monospaced type; a full stop is narrower than the narrowest, a rule thicker than the thickest.
constexpr double narrowest = 0.3;
constexpr double thickest = 0.25;
constexpr double usual = 0.75;
/// A blank is at least so wide.
constexpr double leastBlank = 0.36;

/// An underscore is in the lower part of the place.
constexpr double highest = 0.6;

/// An underscore reaches so many pixels under its neighbours in some fonts; so many beyond have
/// to be free.
constexpr int overhang = 3;
constexpr int besides = 2;

/// Darker pixels are ink.
constexpr int ink = 165;

/// The rows of ink in a column, `bottom` just outside; empty if there is none.
struct Rows
{
    int top = 0;
    int bottom = 0;

    bool isEmpty() const { return bottom <= top; }
};

Rows inkOf(const GreyImage &line, int x, const Box &place)
{
    Rows rows{place.bottom, place.top};
    for (int y = place.top; y < place.bottom; ++y) {
        if (line.at(x, y) < ink) {
            rows.top = std::min(rows.top, y);
            rows.bottom = y + 1;
        }
    }
    return rows;
}

} // namespace

Gap gapAt(const GreyImage &line, const Box &place)
{
    const double highestRow = place.top + highest * place.height();
    const auto isStroke = [&](const Rows &rows) {
        return !rows.isEmpty() && rows.top >= highestRow &&
               rows.bottom - rows.top <= thickest * preparedLetterHeight;
    };
    int left = place.left;
    int right = place.left;
    Rows stroke{place.bottom, place.top};
    for (int x = place.left, start = x; x <= place.right; ++x) {
        const Rows rows = x < place.right ? inkOf(line, x, place) : Rows{};
        if (isStroke(rows)) {
            continue;
        }
        if (x - start > right - left) {
            left = start;
            right = x;
        }
        start = x + 1;
    }
    const int width = right - left;
    if (width < narrowest * preparedLetterHeight) {
        return {};
    }
    for (int x = left; x < right; ++x) {
        const Rows rows = inkOf(line, x, place);
        stroke = {std::min(stroke.top, rows.top), std::max(stroke.bottom, rows.bottom)};
    }
    // The foot of a letter goes on in the letter, and a line under words under both.
    const auto goesOn = [&](int from) {
        for (int y = std::max(0, stroke.top - 1); y < std::min(line.height, stroke.bottom + 1);
             ++y) {
            for (int x = std::max(0, from); x < std::min(line.width, from + besides); ++x) {
                if (line.at(x, y) < ink) {
                    return true;
                }
            }
        }
        return false;
    };
    if (goesOn(left - overhang - besides) || goesOn(right + overhang)) {
        return {};
    }
    const auto blank = [&](int from, int direction) {
        int free = 0;
        for (int x = from; x >= 0 && x < line.width; x += direction, ++free) {
            if (!inkOf(line, x, {0, 0, line.width, line.height}).isEmpty()) {
                break;
            }
        }
        return free >= leastBlank * preparedLetterHeight;
    };
    const int count = std::max(1, int(std::lround(width / (usual * preparedLetterHeight))));
    return {QString(count, u'_'), blank(left - 1, -1), blank(right, 1)};
}

} // namespace recognition
