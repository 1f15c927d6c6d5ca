// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Lines.h"

namespace recognition {

/// The height of a letter with its edges after scaling. The models work at 36 pixels per line;
/// 24 and 36 instead of 30 read 0.5 and 0.9 points worse.
inline constexpr int preparedLetterHeight = 30;

/// A line ready to be read: dark on white, full contrast, letters of one size, a white margin.
struct LineImage
{
    GreyImage picture;
    /// Pixels of `picture` per pixel of the page.
    double scale = 1;
    /// Where the page's pixel (0, 0) would stand in `picture`.
    double offsetX = 0;
    double offsetY = 0;
    /// Grey levels between ink and background at its best word.
    int contrast = 0;
    /// Whether it was of two tones, as type without anti-aliasing is, before it was prepared.
    bool isBilevel = false;

    bool isEmpty() const { return picture.isEmpty(); }
    /// The page's column of a column of `picture`.
    double pageX(double x) const { return (x - offsetX) / scale; }
};

/// Cuts `line` out of `page` and prepares it.
///
/// Each word has its own background and ink: a selection, a badge, or a photograph's light and
/// dark may change within a line. Empty if nothing stands out by `leastContrast` grey levels.
LineImage lineImage(const GreyImage &page, const TextLine &line);

inline constexpr int leastContrast = 10;

/// Whether column `x` of a prepared line holds no ink.
bool isBlankColumn(const GreyImage &picture, int x);

} // namespace recognition
