// SPDX-License-Identifier: MIT
#include "GreyImage.h"

#include "ColouredInk.h"
#include "Effort.h"

#include <QImage>

#include <algorithm>
#include <new>

namespace recognition {

namespace {

/// Rows converted at a time: 4 MB of colour for the widest screens.
constexpr int stripHeight = 128;

/// The rows from `top` on, opaque, in 32 bits.
QImage onWhite(const QImage &image, int top, int height)
{
    QImage strip = image.copy(0, top, image.width(), height)
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (strip.isNull()) {
        throw std::bad_alloc();
    }
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(strip.scanLine(y));
        std::transform(line, line + strip.width(), line, [](QRgb p) {
            const int white = 255 - qAlpha(p);
            return qRgb(std::min(qRed(p) + white, 255), std::min(qGreen(p) + white, 255),
                        std::min(qBlue(p) + white, 255));
        });
    }
    return strip;
}

} // namespace

std::uint8_t lumaOf(QRgb colour)
{
    return std::uint8_t((77 * qRed(colour) + 150 * qGreen(colour) + 29 * qBlue(colour)) >> 8);
}

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
        const QImage strip = onWhite(image, top, std::min(stripHeight, grey.height - top));
        for (int y = 0; y < strip.height(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(strip.constScanLine(y));
            std::transform(line, line + grey.width, grey.row(top + y), lumaOf);
        }
        showColouredInk(strip, grey, top);
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
