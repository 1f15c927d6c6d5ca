// SPDX-License-Identifier: MIT
#pragma once

#include "TextRecognition/GreyImage.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

/// `text` in one line, black on white, with letters about as high as a prepared line's.
inline recognition::GreyImage drawnLine(const QString &text, const QString &family)
{
    QFont font(family);
    font.setPixelSize(40);
    const int width = QFontMetrics(font).horizontalAdvance(text);
    QImage image(width + 40, 72, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(image.rect().adjusted(20, 0, -20, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                     text);
    painter.end();
    return recognition::greyImage(image);
}
