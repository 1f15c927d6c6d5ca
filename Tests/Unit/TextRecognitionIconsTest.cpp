// SPDX-License-Identifier: MIT
// What stands among text without being any: switches, icons beside words.

#include "SampleWord.h"
#include "TextRecognition/IconFilter.h"
#include "TextRecognition/InkHeight.h"
#include "TextRecognition/LineIcons.h"
#include "TextRecognition/LineImage.h"
#include "TextRecognition/Lines.h"
#include "TextRecognition/Marks.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

QImage canvas(int width, int height, const QColor &color = Qt::white)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QFont typeOf(int pixels)
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(pixels);
    return font;
}

void write(QImage &image, int x, int y, const QString &text, int pixels = 14)
{
    QPainter painter(&image);
    painter.setFont(typeOf(pixels));
    painter.drawText(x, y, text);
}

void drawSwitch(QImage &image, const QRect &track, const QColor &color, bool on)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double round = track.height() / 2.0;
    painter.setPen(color.darker(120));
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(track), round, round);
    painter.setBrush(QColor(250, 250, 250));
    const int x = on ? track.right() - track.height() + 1 : track.left();
    painter.drawEllipse(QRectF(x, track.top(), track.height(), track.height()));
}

std::size_t inkColumns(const GreyImage &flat, int from, int to)
{
    std::size_t count = 0;
    for (int x = from; x < to; ++x) {
        bool ink = false;
        for (int y = 0; y < flat.height; ++y) {
            ink = ink || flat.at(x, y) < 128;
        }
        count += ink;
    }
    return count;
}

} // namespace

class TextRecognitionIconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anIconBesideAWordGoesAndANumberStays_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("text");
        QTest::newRow("icon") << u"©"_s << u"ms"_s;
        QTest::newRow("number") << u"18"_s << u"18 ms"_s;
        QTest::newRow("with a sign") << u"−18"_s << u"−18 ms"_s;
        QTest::newRow("with a point") << u"1.8"_s << u"1.8 ms"_s;
    }

    void anIconBesideAWordGoesAndANumberStays()
    {
        QFETCH(const QString, first);
        QFETCH(const QString, text);
        QImage image = canvas(120, 40);
        write(image, 10, 26, u"−18"_s);
        write(image, 52, 26, u"ms"_s);
        const GreyImage page = greyImage(image);
        const std::vector<TextLine> lines = findLines(findMarks(page));
        QCOMPARE(lines.size(), std::size_t(1));
        LineTask task(page, lines.front());
        const int width = task.image().picture.width;
        task.best = {u"eng"_s,
                     {word(first, 80, 0, width * 2 / 5), word(u"ms"_s, 93, width * 3 / 5, width)}};
        QCOMPARE(withoutIcons(task).text(), text);
    }

    void switchesAreNoMarks_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QColor>("color");
        QTest::addColumn<bool>("on");
        QTest::newRow("on") << QSize(50, 26) << QColor(53, 132, 228) << true;
        QTest::newRow("off") << QSize(50, 26) << QColor(225, 222, 219) << false;
        QTest::newRow("small") << QSize(34, 18) << QColor(53, 132, 228) << true;
        QTest::newRow("twice as dense") << QSize(100, 52) << QColor(30, 140, 80) << true;
    }

    void switchesAreNoMarks()
    {
        QFETCH(QSize, size);
        QFETCH(QColor, color);
        QFETCH(bool, on);
        QImage image = canvas(240, 80);
        drawSwitch(image, {QPoint(120, 12), size}, color, on);
        QCOMPARE(findMarks(greyImage(image)).size(), std::size_t(0));
    }

    void wordsAreNoSwitches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("pixels");
        for (const QString &text : {u"SSH"_s, u"27"_s, u"OO"_s, u"CD"_s, u"00"_s, u"On"_s}) {
            for (const int pixels : {11, 14, 20, 40}) {
                QTest::addRow("%s %d", qPrintable(text), pixels) << text << pixels;
            }
        }
    }

    void wordsAreNoSwitches()
    {
        QFETCH(QString, text);
        QFETCH(int, pixels);
        QImage image = canvas(240, 80);
        write(image, 20, 60, text, pixels);
        const auto lines = findLines(findMarks(greyImage(image)));
        QCOMPARE(lines.size(), std::size_t(1));
        QVERIFY(lines[0].box.width() >= QFontMetrics(typeOf(pixels)).horizontalAdvance(text) / 2);
    }

    void boxesAroundTextAreNoMarks_data()
    {
        QTest::addColumn<int>("radius");
        QTest::newRow("straight corners") << 0;
        QTest::newRow("round corners") << 4;
    }

    void boxesAroundTextAreNoMarks()
    {
        QFETCH(int, radius);
        QImage image = canvas(240, 60);
        // The word touches the left side of its box.
        write(image, 22, 36, u"Name"_s);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, radius > 0);
        painter.setPen(QColor(120, 120, 120));
        painter.drawRoundedRect(QRectF(20.5, 20.5, 180, 22), radius, radius);
        painter.end();
        const auto lines = findLines(findMarks(greyImage(image)));
        QCOMPARE(lines.size(), std::size_t(1));
        QVERIFY(lines[0].box.right < 90);
        QVERIFY(lines[0].box.height() < 18);
    }

    void hatchingsAreNoLines()
    {
        QImage image = canvas(300, 200);
        QPainter painter(&image);
        for (int x = -200; x < 300; x += 12) {
            painter.drawLine(x, 0, x + 200, 200);
        }
        painter.end();
        QVERIFY(findLines(findMarks(greyImage(image))).empty());
    }

    void inkTellsTheHeightOfLetters()
    {
        QImage image = canvas(200, 60);
        write(image, 10, 40, u"HEIGHT"_s, 20);
        // Capitals of this family are 0.73 of the type's size.
        QVERIFY(qAbs(inkHeight(greyImage(image)) - 17) <= 1);
        QCOMPARE(inkHeight(GreyImage(20, 20, 255)), 0);
        QCOMPARE(inkHeight(GreyImage()), 0);
    }

    void iconsBesideWordsAreWhitened_data()
    {
        QTest::addColumn<QColor>("fill");
        QTest::newRow("filled") << QColor(90, 90, 90);
        QTest::newRow("pale") << QColor(190, 190, 190);
        QTest::newRow("hollow") << QColor();
    }

    void iconsBesideWordsAreWhitened()
    {
        QFETCH(QColor, fill);
        QImage image = canvas(200, 40);
        write(image, 40, 26, u"Documents"_s);
        QPainter painter(&image);
        if (fill.isValid()) {
            painter.fillRect(10, 13, 14, 14, fill);
        } else {
            painter.drawRect(10, 8, 18, 24);
        }
        painter.end();
        GreyImage flat = greyImage(image);
        const std::size_t word = inkColumns(flat, 36, 200);
        whitenIcons(flat, 12);
        QCOMPARE(inkColumns(flat, 0, 36), std::size_t(0));
        QCOMPARE(inkColumns(flat, 36, 200), word);
    }

    void lettersStandingAloneAreKept_data()
    {
        QTest::addColumn<QString>("text");
        for (const QString &text : {u"À la carte"_s, u"A good one"_s, u"O no"_s, u"• point"_s,
                                    u"1. Zażółć"_s, u"plan B"_s, u"— dash"_s}) {
            QTest::newRow(qPrintable(text)) << text;
        }
    }

    void lettersStandingAloneAreKept()
    {
        QFETCH(QString, text);
        for (const bool bold : {false, true}) {
            QImage image = canvas(200, 40);
            QPainter painter(&image);
            QFont font = typeOf(15);
            font.setBold(bold);
            painter.setFont(font);
            painter.drawText(10, 26, text);
            painter.end();
            GreyImage flat = greyImage(image);
            const GreyImage before = flat;
            whitenIcons(flat, inkHeight(flat));
            QCOMPARE(flat.pixels, before.pixels);
        }
    }
};

QTEST_MAIN(TextRecognitionIconsTest)
#include "TextRecognitionIconsTest.moc"
