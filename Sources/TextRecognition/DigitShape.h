// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <array>
#include <string_view>
#include <vector>

namespace recognition {

/// What a glyph may be told to be: Arabic-Indic digits and what numbers are written with, then
/// `a`, a piece of an Arabic word, `A`, a Latin letter, and `9`, a European digit.
inline constexpr std::u16string_view digitClasses = u"٠١٢٣٤٥٦٧٨٩٪/.:-()[]aA9";

/// Of those, how many are digits, and how many are digits and marks.
inline constexpr std::size_t digitCount = 10;
inline constexpr std::size_t digitAndMarkCount = 19;

/// An 8×8 grid of ink shares, three of size, and three of size and place beside each neighbour.
inline constexpr std::size_t digitFeatureCount = 73;

using DigitFeatures = std::array<float, digitFeatureCount>;
/// One probability per class, in the order of `digitClasses`, that add up to 1.
using DigitShares = std::array<float, digitClasses.size()>;

/// Ink that hangs together or lies above each other, such as a letter with its dots.
struct PlainGlyph
{
    Box box;
    DigitFeatures features{};
    /// Whether it touched another one at its palest.
    bool isParted = false;
};

/// The glyphs of a prepared line with letters `letters` pixels high, from the left. Joined Arabic
/// letters are one glyph; what is as wide, and only touches at its palest, is taken apart if
/// `isParted`.
std::vector<PlainGlyph> plainGlyphs(const GreyImage &picture, int letters, bool isParted = false);

/// How likely a glyph with these features is of each class.
DigitShares digitShares(const DigitFeatures &features);

} // namespace recognition
