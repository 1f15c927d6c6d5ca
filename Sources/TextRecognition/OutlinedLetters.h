// SPDX-License-Identifier: MIT
#pragma once

#include "Components.h"
#include "GreyImage.h"

#include <vector>

namespace recognition {

/// A bright shape that may be a letter with a dark outline.
struct OutlinedLetter
{
    Component shape;
    /// The typical greys of its outline and of itself.
    int outline = 0;
    int fill = 0;
    /// Whether its outline is whole, and whether there is none to speak of or it is no letter.
    bool isSure = false;
    bool isBare = false;
};

/// The least height of a letter, in pixels; lower shapes are dots and accents.
inline constexpr int smallestOutlined = 8;

/// How far from a letter its outline is looked for, in pixels: beyond the letter's blurred edge.
inline constexpr int outlineAt = 2;

/// The bright shapes of `page` that are as high as letters, outlined or not, and the outlined ones
/// that are smaller.
std::vector<OutlinedLetter> outlinedLetters(const GreyImage &page);

/// The value in the middle of `values`, of which there is one at least.
int middleOf(std::vector<int> values);

} // namespace recognition
