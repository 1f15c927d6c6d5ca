// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

namespace recognition {

/// What a network is given of a picture of a line: its ink, and white around it.
struct NetworkLine
{
    /// `whole` must outlive it; `margin`: the white in pixels of `whole`.
    NetworkLine(const GreyImage &whole, int margin);

    double scale(int lineHeight) const { return double(lineHeight) / box.height(); }
    /// As a network reads it whose lines are `lineHeight` high: at least `leastWidth` wide.
    GreyImage line(int lineHeight, int leastWidth) const;

    const GreyImage &picture;
    /// Empty if there is no ink.
    Box inked;
    /// `inked` and the white, which may reach out of the picture.
    Box box;
};

} // namespace recognition
