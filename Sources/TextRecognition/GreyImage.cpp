// SPDX-License-Identifier: MIT
#include "GreyImage.h"

#include "Effort.h"

#include <QImage>

#include <algorithm>
#include <new>

namespace recognition {

namespace {

/// Rows converted at a time: 4 MB of colour for the widest screens.
constexpr int stripHeight = 128;

} // namespace

GreyImage::GreyImage(int w, int h, std::uint8_t value)
    : width(std::max(0, w))
    , height(std::max(0, h))
    , pixels(std::size_t(width) * std::size_t(height), value)
{
}

GreyImage greyImage(const QImage &image)
{
    if (image.isNull()) {
        return {};
    }
    GreyImage grey(image.width(), image.height(), 255);
    for (int top = 0; top < grey.height; top += stripHeight) {
        checkpoint();
        const int rows = std::min(stripHeight, grey.height - top);
        const QImage strip = image.copy(0, top, grey.width, rows)
                                 .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        if (strip.isNull()) {
            throw std::bad_alloc();
        }
        for (int y = 0; y < rows; ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(strip.constScanLine(y));
            std::uint8_t *out = grey.row(top + y);
            for (int x = 0; x < grey.width; ++x) {
                const QRgb p = line[x];
                const int white = 255 - qAlpha(p);
                const int luma = (77 * (qRed(p) + white) + 150 * (qGreen(p) + white) +
                                  29 * (qBlue(p) + white)) >>
                                 8;
                out[x] = std::uint8_t(std::min(luma, 255));
            }
        }
    }
    return grey;
}

GreyImage cropped(const GreyImage &image, const Box &box)
{
    GreyImage part(box.width(), box.height(), 0);
    for (int y = 0; y < part.height; ++y) {
        std::copy_n(image.row(box.top + y) + box.left, part.width, part.row(y));
    }
    return part;
}

} // namespace recognition
