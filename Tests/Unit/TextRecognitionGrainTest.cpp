// SPDX-License-Identifier: MIT
// Textures are told before any model is asked: their dots, and pure noise.

#include "TextRecognition/Grain.h"
#include "TextRecognition/GreyImage.h"
#include "TextRecognition/Lines.h"
#include "TextRecognition/Marks.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

constexpr QSize size(640, 480);

QImage canvas(const QColor &color = Qt::white)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

void write(QImage &image, int x, int y, const QString &text, const QColor &color = Qt::black,
           int pixels = 16)
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(pixels);
    QPainter painter(&image);
    painter.setPen(color);
    painter.setFont(font);
    painter.drawText(x, y, text);
}

void drawSpot(QImage &image, const QPoint &middle, double radius, const QColor &color)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QPointF(middle), radius, radius);
}

QImage raster(int pitch, double radius)
{
    QImage image = canvas();
    for (int y = pitch / 2; y < size.height(); y += pitch) {
        for (int x = pitch / 2; x < size.width(); x += pitch) {
            drawSpot(image, {x, y}, radius, Qt::black);
        }
    }
    return image;
}

/// Light spots at random places on black.
QImage stars()
{
    QRandomGenerator random(1);
    QImage image = canvas(Qt::black);
    for (int i = 0; i < 300; ++i) {
        const int light = 120 + random.bounded(136);
        drawSpot(image, {random.bounded(size.width()), random.bounded(size.height())},
                 2 + random.bounded(2), QColor(light, light, light));
    }
    return image;
}

/// `share` of each pixel is chance.
QImage withNoise(QImage image, double share)
{
    QRandomGenerator random(1);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double grey =
                share * random.bounded(256) + (1 - share) * qGray(image.pixel(x, y));
            image.setPixel(x, y, qRgb(int(grey), int(grey), int(grey)));
        }
    }
    return image;
}

std::vector<Mark> marksOf(const QImage &image)
{
    const GreyImage page = greyImage(image);
    std::vector<Mark> marks = findMarks(page);
    dropGrain(marks, page);
    return marks;
}

std::size_t lettersIn(const std::vector<Mark> &marks, const Box &place)
{
    return std::size_t(std::ranges::count_if(
        marks, [&place](const Mark &mark) { return place.contains(mark.box); }));
}

} // namespace

class TextRecognitionGrainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRasterLeavesNothingToRead_data()
    {
        QTest::addColumn<int>("pitch");
        QTest::addColumn<double>("radius");
        QTest::newRow("small") << 10 << 2.5;
        QTest::newRow("wide apart") << 24 << 3.5;
        QTest::newRow("big") << 40 << 9.0;
    }

    void aRasterLeavesNothingToRead()
    {
        QFETCH(int, pitch);
        QFETCH(double, radius);
        const QImage image = raster(pitch, radius);
        QVERIFY(findMarks(greyImage(image)).size() >= 100);
        QCOMPARE(findLines(marksOf(image)).size(), std::size_t(0));
    }

    void starsAreNoLetters()
    {
        const QImage image = stars();
        const std::size_t before = findMarks(greyImage(image)).size();
        QVERIFY(before >= 100);
        // What is left are those that touch.
        QVERIFY2(5 * marksOf(image).size() < before,
                 qPrintable(QString::number(marksOf(image).size())));
    }

    void lettersAmongStarsStay()
    {
        QImage image = stars();
        QPainter(&image).fillRect(QRect(100, 200, 300, 40), Qt::black);
        const Box place{104, 204, 396, 236};
        write(image, 110, 228, u"A few letters"_s, Qt::white, 24);
        const std::size_t all = lettersIn(findMarks(greyImage(image)), place);
        QVERIFY(all >= 3);
        QCOMPARE(lettersIn(marksOf(image), place), all);
    }

    void aPageOfTextStays()
    {
        QImage image = canvas();
        for (int y = 20; y < size.height(); y += 22) {
            write(image, 10, y, u"oooo 0000 0000 o.o.o :-) 88 • ..."_s);
        }
        QCOMPARE(marksOf(image).size(), findMarks(greyImage(image)).size());
    }

    void leadersOfATableOfContentsStay()
    {
        QImage image = canvas();
        for (int y = 30; y < size.height(); y += 50) {
            write(image, 10, y, u"Chapter "_s + QString(45, u'.') + u" 7"_s, Qt::black, 32);
        }
        const std::size_t all = findMarks(greyImage(image)).size();
        QVERIFY(all >= 150);
        QCOMPARE(marksOf(image).size(), all);
    }

    void aFewDotsStay()
    {
        QImage image = canvas();
        for (int i = 0; i < 20; ++i) {
            drawSpot(image, {20 + 25 * i, 50 + 7 * i}, 5, Qt::black);
        }
        QCOMPARE(marksOf(image).size(), std::size_t(20));
    }

    void noiseIsTold()
    {
        QVERIFY(isNoise(greyImage(withNoise(canvas(), 1))));
        QVERIFY(isNoise(greyImage(withNoise(canvas(), 0.2))));
    }

    void textIsNoNoise()
    {
        QImage image = canvas();
        for (int y = 20; y < size.height(); y += 12) {
            write(image, 0, y, u"illumination iiiiillllll mwmwmw ### @@@ "_s.repeated(4), Qt::black,
                  9);
        }
        QVERIFY(!isNoise(greyImage(image)));
        QVERIFY(!isNoise(greyImage(withNoise(image, 0.3))));
    }

    void aLittleTextOnNoiseIsNoNoise()
    {
        QImage image = withNoise(canvas(), 1);
        QPainter(&image).fillRect(QRect(0, 0, 320, 120), Qt::white);
        write(image, 20, 60, u"A label"_s, Qt::black, 40);
        QVERIFY(!isNoise(greyImage(image)));
    }

    void nothingIsNoNoise()
    {
        QVERIFY(!isNoise(greyImage(canvas())));
        QVERIFY(!isNoise(GreyImage()));
        QVERIFY(!isNoise(GreyImage(1, 1, 7)));
        std::vector<Mark> none;
        dropGrain(none, GreyImage());
        QVERIFY(none.empty());
    }
};

QTEST_MAIN(TextRecognitionGrainTest)
#include "TextRecognitionGrainTest.moc"
