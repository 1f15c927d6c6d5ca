// SPDX-License-Identifier: MIT
//
// draw-text IMAGE FONT PIXELS PAPER INK LINE…: writes lines of text as Qt draws them.

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cstdio>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 7) {
        std::fputs("usage: draw-text IMAGE FONT PIXELS PAPER INK LINE...\n", stderr);
        return 2;
    }
    const QStringList lines = arguments.mid(6);
    QFont font(arguments[2]);
    font.setPixelSize(std::max(1, arguments[3].toInt()));
    const QFontMetrics metrics(font);
    int width = 0;
    for (const QString &line : lines) {
        width = std::max(width, metrics.horizontalAdvance(line));
    }

    const int pitch = font.pixelSize() * 2;
    QImage image(width + 40, int(lines.size()) * pitch + 20, QImage::Format_RGB32);
    image.fill(QColor(arguments[4]));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(arguments[5]));
    for (int i = 0; i < lines.size(); ++i) {
        const Qt::Alignment side = lines[i].isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
        QTextOption option(side | Qt::AlignVCenter);
        option.setWrapMode(QTextOption::NoWrap);
        option.setTextDirection(lines[i].isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        painter.drawText(QRectF(20, 10 + i * pitch, width, pitch), lines[i], option);
    }
    painter.end();
    return image.save(arguments[1]) ? 0 : 1;
}
