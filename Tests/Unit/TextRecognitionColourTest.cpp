// SPDX-License-Identifier: MIT
// Letters that their colour alone tells from what they stand on.

#include "TextRecognition/GreyImage.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

QImage paperOf(QColor colour)
{
    QImage image(200, 40, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QImage drawnText(QColor paper, QColor ink)
{
    QImage image = paperOf(paper);
    QPainter painter(&image);
    QFont font(u"DejaVu Sans Mono"_s);
    font.setPixelSize(16);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(10, 25, u"app.log 1:46"_s);
    return image;
}

/// By how many grey levels what is drawn stands out from the corner.
int contrast(const GreyImage &grey)
{
    int most = 0;
    for (const std::uint8_t pixel : grey.pixels) {
        most = std::max(most, std::abs(pixel - grey.at(0, 0)));
    }
    return most;
}

} // namespace

class TextRecognitionColourTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lettersOfAnotherColourStandOut_data()
    {
        QTest::addColumn<QColor>("paper");
        QTest::addColumn<QColor>("ink");
        QTest::newRow("red on a terminal's dark blue") << QColor(0x282a36) << QColor(0xcc0000);
        QTest::newRow("blue on black") << QColor(Qt::black) << QColor(0x0000ee);
        QTest::newRow("yellow on white") << QColor(Qt::white) << QColor(Qt::yellow);
    }

    void lettersOfAnotherColourStandOut()
    {
        QFETCH(const QColor, paper);
        QFETCH(const QColor, ink);
        QVERIFY(std::abs(lumaOf(paper.rgb()) - lumaOf(ink.rgb())) < 40);
        QVERIFY(contrast(greyImage(drawnText(paper, ink))) > 120);
    }

    void lettersThatLumaShowsStayAsTheyAre_data()
    {
        QTest::addColumn<QColor>("paper");
        QTest::addColumn<QColor>("ink");
        QTest::newRow("black on white") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("green on black") << QColor(Qt::black) << QColor(0x4e9a06);
        QTest::newRow("white on blue") << QColor(0x0000c0) << QColor(Qt::white);
    }

    void lettersThatLumaShowsStayAsTheyAre()
    {
        QFETCH(const QColor, paper);
        QFETCH(const QColor, ink);
        const QImage image = drawnText(paper, ink);
        const GreyImage grey = greyImage(image);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                QCOMPARE(grey.at(x, y), lumaOf(image.pixel(x, y)));
            }
        }
    }

    void lettersOnABadgeKeepTheirBadge()
    {
        QImage image = paperOf(0x282a36);
        QPainter painter(&image);
        painter.fillRect(20, 10, 24, 20, QColor(0xcc0000));
        painter.fillRect(30, 14, 3, 12, Qt::white);
        painter.end();
        const GreyImage grey = greyImage(image);
        QCOMPARE(grey.at(22, 12), lumaOf(qRgb(0xcc, 0, 0)));
        QCOMPARE(grey.at(31, 20), std::uint8_t(255));
    }

    void aDiscIsNoLetter()
    {
        QImage image = paperOf(Qt::white);
        QPainter painter(&image);
        painter.setBrush(QColor(Qt::yellow));
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(20, 10, 14, 14);
        painter.end();
        QCOMPARE(greyImage(image).at(27, 17), lumaOf(qRgb(255, 255, 0)));
    }

    void whatIsTransparentIsWhite()
    {
        QImage image(40, 10, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        const GreyImage grey = greyImage(image);
        QVERIFY(std::ranges::all_of(grey.pixels, [](std::uint8_t p) { return p == 255; }));
    }
};

QTEST_MAIN(TextRecognitionColourTest)
#include "TextRecognitionColourTest.moc"
