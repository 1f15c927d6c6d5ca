// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Lines.h"

#include <array>
#include <cstdlib>
#include <vector>

namespace recognition {

/// The greys of some letters and of what they stand on.
struct Tones
{
    int background = 255;
    int ink = 0;
    /// Whether the letters stand on a patch hardly bigger than they: what is at its edge is no ink.
    bool onPatch = false;

    int contrast() const { return std::abs(ink - background); }
    bool isDarkOnBright() const { return ink < background; }
};

/// How many pixels have each grey.
using Histogram = std::array<int, 256>;

/// Some letters of the line that share a background.
struct Stretch
{
    Box box;
    /// Boxes of what stands one above the other or touches: letters or whole words.
    std::vector<Box> words;
    /// All pixels of these boxes, and those on their rims: just outside the ink.
    Histogram inside{};
    Histogram rim{};
    Tones tones;

    double centre() const { return (box.left + box.right) / 2.0; }
};

/// The line's letters from the left, cut where there is a gap or after three letter heights, then
/// joined again where the background stays the same: a selection, a badge, or a photograph's light
/// and dark may change within a line.
std::vector<Stretch> stretchesOf(const GreyImage &page, const TextLine &line);

/// The tones at column `x`: those of its stretch, but where the background of like letters
/// changes, as on a photograph, they change steadily from one stretch's middle to the next's.
Tones tonesAt(const std::vector<Stretch> &stretches, int x);

} // namespace recognition
