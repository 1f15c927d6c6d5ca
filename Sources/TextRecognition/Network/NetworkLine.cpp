// SPDX-License-Identifier: MIT
#include "NetworkLine.h"

#include "Glyph.h"
#include "Resample.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// The part of `picture` in `box`, which may reach out into the white around it.
GreyImage withWhite(const GreyImage &picture, const Box &box)
{
    GreyImage result(box.width(), box.height(), 255);
    const Box inside{std::max(box.left, 0), std::max(box.top, 0),
                     std::min(box.right, picture.width), std::min(box.bottom, picture.height)};
    for (int y = inside.top; y < inside.bottom; ++y) {
        std::copy(picture.row(y) + inside.left, picture.row(y) + inside.right,
                  result.row(y - box.top) + inside.left - box.left);
    }
    return result;
}

} // namespace

NetworkLine::NetworkLine(const GreyImage &whole, int margin)
    : picture(whole)
    , inked(inkIn(whole, {0, 0, whole.width, whole.height}))
    , box{inked.left - margin, inked.top - margin, inked.right + margin, inked.bottom + margin}
{
}

GreyImage NetworkLine::line(int lineHeight, int leastWidth) const
{
    const int width = std::max(int(std::lround(box.width() * scale(lineHeight))), leastWidth);
    return resampled(withWhite(picture, box), width, lineHeight);
}

} // namespace recognition
