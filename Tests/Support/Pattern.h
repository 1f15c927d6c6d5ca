// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// What a test lays over the desktop to see whether anything covers it: no pixel is like its
/// neighbours, and all are bright enough to show a dim.
inline QImage pattern(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            // Knuth's multiplicative hash of the place.
            const quint32 hash =
                (static_cast<quint32>(y) * 4099U + static_cast<quint32>(x)) * 2654435761U;
            image.setPixel(x, y, 0xff303030U | (hash >> 8));
        }
    }
    return image;
}
