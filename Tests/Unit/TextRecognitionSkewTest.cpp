// SPDX-License-Identifier: MIT
// Pages that lie askew are measured and laid level; level ones stay as they are.

#include "TextRecognition/GreyImage.h"
#include "TextRecognition/Skew.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

constexpr QSize size(900, 500);

/// Of the text on the page, in pixels.
constexpr int lineWidth = 450;

QImage levelPage(const QColor &paper, const QColor &ink)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(paper);
    QPainter painter(&image);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(15);
    painter.setFont(font);
    painter.setPen(ink);
    for (int y = 60; y < size.height() - 40; y += 26) {
        painter.drawText(60, y, u"Nobody minds this while reading: the eye follows a line"_s);
    }
    return image;
}

/// A page of text that falls to the right by so many degrees.
QImage page(double degrees, const QColor &paper = Qt::white, const QColor &ink = Qt::black)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(paper);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(size.width() / 2, size.height() / 2);
    painter.rotate(degrees);
    painter.drawImage(-size.width() / 2, -size.height() / 2, levelPage(paper, ink));
    return image;
}

double slopeFor(double degrees)
{
    return std::tan(degrees * std::numbers::pi / 180);
}

/// The share of pixels that are much darker or brighter than there.
double difference(const GreyImage &one, const GreyImage &other)
{
    int count = 0;
    for (int y = 0; y < one.height; ++y) {
        for (int x = 0; x < one.width; ++x) {
            count += std::abs(one.at(x, y) - other.at(x, y)) > 100;
        }
    }
    return double(count) / (double(one.width) * one.height);
}

} // namespace

class TextRecognitionSkewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slopes_data();
    void slopes();
    void levelPages_data();
    void levelPages();
    void levelled();
    void aroundThePage();
    void boxes();
};

void TextRecognitionSkewTest::slopes_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QColor>("paper");
    QTest::addColumn<QColor>("ink");
    const QColor dark(38, 40, 46);
    for (const double degrees : {-3.0, -1.2, -0.5, 0.5, 1.0, 2.4, 3.0}) {
        QTest::addRow("%g", degrees) << degrees << QColor(Qt::white) << QColor(Qt::black);
        QTest::addRow("%g in the dark", degrees) << degrees << dark << QColor(Qt::white);
    }
}

void TextRecognitionSkewTest::slopes()
{
    QFETCH(double, degrees);
    QFETCH(QColor, paper);
    QFETCH(QColor, ink);
    const double slope = slopeOf(greyImage(page(degrees, paper, ink)));
    // The end of a line is at most a pixel off.
    QVERIFY2(std::fabs(slope - slopeFor(degrees)) < 1.0 / lineWidth,
             qPrintable(u"%1 instead of %2"_s.arg(slope).arg(slopeFor(degrees))));
}

void TextRecognitionSkewTest::levelPages_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addRow("text") << page(0);
    QTest::addRow("hardly turned") << page(0.1);
    QTest::addRow("turned on purpose") << page(12);
    QImage blank(size, QImage::Format_RGB32);
    blank.fill(Qt::white);
    QTest::addRow("blank") << blank;
    QImage stairs = blank;
    QPainter painter(&stairs);
    for (int i = 0; i < 18; ++i) {
        painter.drawText(40 + 40 * i, 40 + 24 * i, u"entry"_s);
    }
    painter.end();
    QTest::addRow("stairs") << stairs;
    QImage noise = blank;
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            noise.setPixel(x, y, random.generate());
        }
    }
    QTest::addRow("noise") << noise;
    QTest::addRow("one pixel") << blank.copy(0, 0, 1, 1);
    QTest::addRow("one row") << page(0).copy(0, 55, size.width(), 1);
    QTest::addRow("one column") << page(0).copy(70, 0, 1, size.height());
    QTest::addRow("nothing") << QImage();
}

void TextRecognitionSkewTest::levelPages()
{
    QFETCH(QImage, image);
    QCOMPARE(slopeOf(greyImage(image)), 0.0);
}

void TextRecognitionSkewTest::levelled()
{
    for (const double degrees : {-3.0, 1.0, 2.4}) {
        const GreyImage turned = greyImage(page(degrees));
        const GreyImage level =
            Levelling(turned.width, turned.height, slopeFor(degrees)).apply(turned);
        QVERIFY(level.width >= size.width() && level.height >= size.height());
        const Box middle{(level.width - size.width()) / 2, (level.height - size.height()) / 2,
                         (level.width + size.width()) / 2, (level.height + size.height()) / 2};
        QCOMPARE(slopeOf(level), 0.0);
        // Thin letters differ, since the middle may be half a pixel off.
        const GreyImage straight = greyImage(page(0));
        const double before = difference(turned, straight);
        const double after = difference(cropped(level, middle), straight);
        QVERIFY2(after < before / 3, qPrintable(u"%1 of %2"_s.arg(after).arg(before)));
    }
}

void TextRecognitionSkewTest::aroundThePage()
{
    const GreyImage grey(200, 100, 90);
    const GreyImage level = Levelling(grey.width, grey.height, 0.05).apply(grey);
    QVERIFY(std::ranges::all_of(level.pixels, [](std::uint8_t value) { return value == 90; }));
}

void TextRecognitionSkewTest::boxes()
{
    const Levelling levelling(size.width(), size.height(), slopeFor(2));
    const GreyImage level = levelling.apply(GreyImage(size.width(), size.height(), 255));
    const Box middle{level.width / 2 - 10, level.height / 2 - 10, level.width / 2 + 10,
                     level.height / 2 + 10};
    const Box found = levelling.onPage(middle);
    QVERIFY(std::abs(found.centreX2() - size.width()) <= 2);
    QVERIFY(std::abs(found.centreY2() - size.height()) <= 2);
    QVERIFY(found.width() >= 20 && found.width() <= 24);

    // What stands further right stands lower on the page.
    const Box right{level.width - 60, level.height / 2 - 10, level.width - 40,
                    level.height / 2 + 10};
    QVERIFY(levelling.onPage(right).top > found.top + 10);

    const Box page{0, 0, size.width(), size.height()};
    QVERIFY(levelling.onPage(Box{0, 0, level.width, level.height}).contains(page));
    // The corners of the level picture are beside the page.
    for (const Box &corner :
         {Box{0, 0, 9, 9}, Box{level.width - 9, level.height - 9, level.width, level.height}}) {
        const Box beside = levelling.onPage(corner);
        QVERIFY(horizontalOverlap(beside, page) <= 0 || verticalOverlap(beside, page) <= 0);
    }
}

QTEST_MAIN(TextRecognitionSkewTest)
#include "TextRecognitionSkewTest.moc"
