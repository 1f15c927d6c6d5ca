// SPDX-License-Identifier: MIT
#include "LineRules.h"

#include <algorithm>
#include <vector>

namespace recognition {

namespace {

/// Paler pixels are no part of a rule.
constexpr int palest = 150;

/// Longer runs of ink, in letter heights, are rules: dashes and the baselines of joined letters
/// stay below. A shorter one is, if it and others leave only gaps for descenders.
constexpr int longStroke = 4;
constexpr int shortStroke = 2;

/// Neighbouring rows with a rule.
struct Band
{
    int top = 0;
    int bottom = 0;
};

/// How thick a rule may be, in letter heights.
constexpr double thickest = 0.25;

/// The runs of ink in a row.
struct Strokes
{
    int longest = 0;
    /// Pixels in runs about as long as a letter is high.
    int inLong = 0;
};

Strokes strokesOf(const GreyImage &flat, int y, int height)
{
    const std::uint8_t *row = flat.row(y);
    Strokes strokes;
    int run = 0;
    for (int x = 0; x <= flat.width; ++x) {
        if (x < flat.width && row[x] < palest) {
            ++run;
            continue;
        }
        strokes.longest = std::max(strokes.longest, run);
        strokes.inLong += 5 * run >= 3 * height ? run : 0;
        run = 0;
    }
    return strokes;
}

/// The columns from the first to the last with ink.
int inkWidth(const GreyImage &flat)
{
    int left = flat.width;
    int right = 0;
    for (int y = 0; y < flat.height; ++y) {
        const std::uint8_t *row = flat.row(y);
        for (int x = 0; x < flat.width; ++x) {
            if (row[x] < palest) {
                left = std::min(left, x);
                right = std::max(right, x + 1);
            }
        }
    }
    return std::max(0, right - left);
}

/// Takes the rows of `band` away from column `left` to `right` but where there is ink above and
/// below.
void erase(GreyImage &flat, const Band &band, int left, int right)
{
    const auto value = [&flat](int x, int y) {
        return y < 0 || y >= flat.height ? std::uint8_t(255) : flat.at(x, y);
    };
    for (int x = left; x < right; ++x) {
        const std::uint8_t paler = std::max(value(x, band.top - 1), value(x, band.bottom));
        for (int y = band.top; y < band.bottom; ++y) {
            std::uint8_t &pixel = flat.row(y)[x];
            pixel = std::max(pixel, paler);
        }
    }
}

} // namespace

void removeRules(GreyImage &flat, int height)
{
    const int all = inkWidth(flat);
    if (all == 0) {
        return;
    }
    std::vector<Band> bands;
    for (int y = 0; y < flat.height; ++y) {
        const Strokes strokes = strokesOf(flat, y, height);
        const bool isLong = strokes.longest > longStroke * height && 10 * strokes.inLong >= 6 * all;
        const bool isWhole =
            strokes.longest >= shortStroke * height && 20 * strokes.inLong >= 17 * all;
        if (!isLong && !isWhole) {
            continue;
        }
        if (!bands.empty() && bands.back().bottom == y) {
            ++bands.back().bottom;
        } else {
            bands.push_back({y, y + 1});
        }
    }
    for (Band band : bands) {
        if (band.bottom - band.top > std::max(2.0, thickest * height)) {
            continue;
        }
        // The blur of a rule that lies between two rows of pixels.
        const auto isBlur = [&](int y) {
            int grey = 0;
            for (int x = 0; y >= 0 && y < flat.height && x < flat.width; ++x) {
                grey += flat.at(x, y) < 245;
            }
            return 10 * grey >= 9 * all;
        };
        band.top -= isBlur(band.top - 1);
        band.bottom += isBlur(band.bottom);
        erase(flat, band, 0, flat.width);
    }
}

} // namespace recognition
