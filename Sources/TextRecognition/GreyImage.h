// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <vector>

class QImage;

namespace recognition {

/// A picture of one byte per pixel, 0 black to 255 white, rows from the top without padding.
///
/// The whole engine works on it, so that the same screen gives the same answer whatever format
/// (palette, 16-bit, with alpha) it came in.
struct GreyImage
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    GreyImage() = default;
    /// A picture of one value. Negative sizes count as nothing.
    GreyImage(int width, int height, std::uint8_t value);

    bool isEmpty() const { return pixels.empty(); }
    std::uint8_t at(int x, int y) const { return row(y)[x]; }
    const std::uint8_t *row(int y) const { return pixels.data() + std::size_t(y) * width; }
    std::uint8_t *row(int y) { return pixels.data() + std::size_t(y) * width; }
};

/// The luma (ITU-R BT.601) of an opaque colour.
std::uint8_t lumaOf(QRgb colour);

/// The luma of `image`, with letters shown that differ by their colour alone; what is transparent
/// shows white. A null image gives an empty one. Works strip by strip, so that a huge picture is
/// never held twice in full colour.
GreyImage greyImage(const QImage &image);

/// The part of `image` in `box`, which lies within it.
GreyImage cropped(const GreyImage &image, const Box &box);

} // namespace recognition
