// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace recognition {

/// The part of `box` in a prepared line that has ink; empty without any.
Box inkIn(const GreyImage &line, Box box);

/// Ink that hangs together, in a prepared line.
struct Glyph
{
    Box box;
    /// x and y.
    std::vector<std::pair<int, int>> pixels;
};

/// The glyph whose ink is nearest to the middle column of `place`, which may reach out of `line`.
/// Nothing if there is no ink, or if it hangs together over more than `widest` columns, as letters
/// that touch do.
std::optional<Glyph> glyphAt(const GreyImage &line, const Box &place, int widest);

/// Whether a glyph read as a capital L is a small l: a stroke alone, or one with a serif left of
/// it, where a capital has its stroke at the left edge.
bool isSmallL(const Glyph &glyph);

/// Whether a glyph read as a vertical bar is a capital I: bars reach below the foot of the line.
/// `inked`: the part of the line with ink.
bool isCapitalI(const Glyph &glyph, const GreyImage &line, const Box &inked);

} // namespace recognition
