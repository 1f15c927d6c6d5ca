// SPDX-License-Identifier: MIT
// Pixels of a rectangle in points.

#include "Platform/ScreenImage.h"

#include <QTest>

class ScreenImageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsOfARectangle_data();
    void pixelsOfARectangle();
};

void ScreenImageTest::pixelsOfARectangle_data()
{
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRect>("expected");

    const QSize pixels(300, 200);
    QTest::newRow("alike") << pixels << QSizeF(300, 200) << QRectF(10, 20, 30, 40)
                           << QRect(10, 20, 30, 40);
    QTest::newRow("dense") << pixels << QSizeF(150, 100) << QRectF(10, 20, 30, 40)
                           << QRect(20, 40, 60, 80);
    QTest::newRow("half of a pixel counts")
        << pixels << QSizeF(300, 200) << QRectF(10.5, 20, 1, 1) << QRect(10, 20, 2, 1);
    QTest::newRow("rounding adds none")
        << pixels << QSizeF(200, 200 / 1.5) << QRectF(2.0 / 3, 2.0 / 3, 2, 2) << QRect(1, 1, 3, 3);
    QTest::newRow("over the edge")
        << pixels << QSizeF(300, 200) << QRectF(290, 190, 30, 30) << QRect(290, 190, 10, 10);
    QTest::newRow("left of it") << pixels << QSizeF(300, 200) << QRectF(-5, -5, 10, 10)
                                << QRect(0, 0, 5, 5);
    QTest::newRow("outside") << pixels << QSizeF(300, 200) << QRectF(400, 10, 10, 10) << QRect();
    QTest::newRow("no picture") << QSize() << QSizeF(300, 200) << QRectF(0, 0, 10, 10) << QRect();
}

void ScreenImageTest::pixelsOfARectangle()
{
    QFETCH(const QSize, pixels);
    QFETCH(const QSizeF, points);
    QFETCH(const QRectF, rect);
    QFETCH(const QRect, expected);
    QImage image = pixels.isEmpty() ? QImage() : QImage(pixels, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x / 256, x % 256, y));
        }
    }
    const QImage cut = croppedToPoints(image, points, rect);
    QCOMPARE(cut.size(), expected.size());
    if (!expected.isEmpty()) {
        QCOMPARE(cut, image.copy(expected));
    }
}

QTEST_GUILESS_MAIN(ScreenImageTest)
#include "ScreenImageTest.moc"
