// SPDX-License-Identifier: MIT
// What is done to text before it is read: outlined letters freed, rows parted, rules removed,
// steps softened.

#include "TextRecognition/LineRules.h"
#include "TextRecognition/Lines.h"
#include "TextRecognition/Marks.h"
#include "TextRecognition/OutlinedText.h"
#include "TextRecognition/Soften.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

QImage written(const QString &text, int pixels = 16)
{
    QImage image(300, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(pixels);
    painter.setFont(font);
    painter.drawText(10, 36, text);
    return image;
}

void drawRule(QImage &image, int y, int left, int right)
{
    QPainter(&image).fillRect(left, y, right - left, 1, Qt::black);
}

int difference(const GreyImage &a, const GreyImage &b)
{
    int different = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        different += std::abs(a.pixels[i] - b.pixels[i]) > 100;
    }
    return different;
}

/// A picture of hills and dales of grey.
QImage scenery()
{
    QImage image(400, 120, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int level = 120 + int(50 * std::sin(x / 9.0) * std::cos(y / 7.0));
            image.setPixel(x, y, qRgb(level, level, level));
        }
    }
    return image;
}

void drawOutlined(QImage &image, const QString &text, const QColor &fill, const QColor &outline)
{
    QPainterPath path;
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(26);
    path.addText(40, 70, font, text);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(path, QPen(outline, 5));
    painter.fillPath(path, fill);
}

/// Two rows of words close to each other, of which the middle mark ties both.
std::vector<Mark> tiedRows(int bottom)
{
    std::vector<Mark> marks;
    for (int i = 0; i < 4; ++i) {
        for (const int top : {0, 16}) {
            marks.push_back(
                {{40 * i, top, 40 * i + 30, top + 12}, false, 200, std::vector<int>(12, 20)});
        }
    }
    std::vector<int> rows(std::size_t(bottom), 20);
    std::fill(rows.begin() + 12, rows.begin() + std::min(bottom, 16), 2);
    marks.push_back({{160, 0, 190, bottom}, false, 200, rows});
    return marks;
}

} // namespace

class TextRecognitionLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outlinedLettersAreFreed_data()
    {
        QTest::addColumn<QColor>("fill");
        QTest::addColumn<QColor>("outline");
        QTest::newRow("white") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("yellow") << QColor(255, 225, 60) << QColor(Qt::black);
        QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
    }

    void outlinedLettersAreFreed()
    {
        QFETCH(QColor, fill);
        QFETCH(QColor, outline);
        QImage image = scenery();
        drawOutlined(image, u"Subtitles"_s, fill, outline);
        const OutlinedText found = findOutlinedText(greyImage(image));
        QCOMPARE(found.rows.size(), std::size_t(1));
        const Box &row = found.rows.front();
        QVERIFY(row.left <= 40 && row.right >= 140 && row.right < 220);
        QVERIFY(row.top <= 52 && row.bottom >= 70);
        // Around the letters there is nothing left but their outline's grey.
        const int paper = qGray(outline.rgb());
        for (int x = row.left; x < row.right; ++x) {
            QVERIFY(std::abs(found.page.at(x, row.top) - paper) < 40);
        }
    }

    void plainTextIsNotOutlined_data()
    {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("paper");
        QTest::newRow("dark") << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("bright") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("grey") << QColor(Qt::white) << QColor(90, 90, 90);
    }

    void plainTextIsNotOutlined()
    {
        QFETCH(QColor, ink);
        QFETCH(QColor, paper);
        for (const int pixels : {12, 40, 80}) {
            QImage image(500, 140, QImage::Format_RGB32);
            image.fill(paper);
            QPainter painter(&image);
            QFont font(u"DejaVu Sans"_s);
            font.setPixelSize(pixels);
            painter.setFont(font);
            painter.setPen(ink);
            painter.drawText(20, 100, u"Big Boo 80"_s);
            painter.end();
            QVERIFY(findOutlinedText(greyImage(image)).rows.empty());
        }
    }

    void sceneryAloneHasNoText()
    {
        QVERIFY(findOutlinedText(greyImage(scenery())).rows.empty());
        QVERIFY(findOutlinedText(GreyImage()).rows.empty());
    }

    void tiedRowsArePartedAtTheValley()
    {
        const std::vector<TextLine> lines = findLines(tiedRows(28));
        QCOMPARE(lines.size(), std::size_t(2));
        for (const TextLine &line : lines) {
            QCOMPARE(line.marks.size(), std::size_t(5));
            QVERIFY(line.box.height() <= 16);
        }
    }

    void oneRowStaysOne()
    {
        QCOMPARE(findLines(findMarks(greyImage(written(u"gypsy HEIGHT ççŞİ"_s)))).size(),
                 std::size_t(1));
    }

    void struckWordsStayOneLine()
    {
        QImage image = written(u"Struck through"_s);
        drawRule(image, 31, 8, 130);
        QCOMPARE(findLines(findMarks(greyImage(image))).size(), std::size_t(1));
    }

    void rulesGoAndStrokesStay_data()
    {
        QTest::addColumn<int>("y");
        QTest::newRow("under") << 38;
        QTest::newRow("through") << 31;
    }

    void rulesGoAndStrokesStay()
    {
        QFETCH(int, y);
        QImage image = written(u"Hill minimum"_s);
        const GreyImage plain = greyImage(image);
        drawRule(image, y, 8, 122);
        GreyImage flat = greyImage(image);
        const int before = difference(flat, plain);
        removeRules(flat, 14);
        QVERIFY2(difference(flat, plain) * 5 < before,
                 qPrintable(u"%1 of %2"_s.arg(difference(flat, plain)).arg(before)));
    }

    void lettersAreNoRules_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("latin") << u"TEXT = LETTER"_s;
        QTest::newRow("dash") << u"a — b"_s;
        QTest::newRow("arabic") << u"مستشفى سبب"_s;
    }

    void lettersAreNoRules()
    {
        QFETCH(QString, text);
        GreyImage flat = greyImage(written(text));
        const GreyImage before = flat;
        removeRules(flat, 14);
        QCOMPARE(flat.pixels, before.pixels);
    }

    void nothingHasNoRules()
    {
        GreyImage flat(30, 10, 255);
        removeRules(flat, 8);
        QCOMPARE(flat.pixels, GreyImage(30, 10, 255).pixels);
    }

    void onlyStepsAreSoftened()
    {
        GreyImage steps(20, 20, 255);
        for (int i = 4; i < 16; ++i) {
            steps.row(i)[i] = 0;
        }
        QVERIFY(isBilevel(steps));
        const GreyImage soft = softened(steps);
        QVERIFY(soft.at(8, 8) < 160);
        QVERIFY(soft.at(9, 8) < 255);
        QCOMPARE(soft.at(2, 12), std::uint8_t(255));
        QVERIFY(!isBilevel(soft));
        QVERIFY(!isBilevel(greyImage(written(u"smooth"_s, 15))));
    }

    void stepsOfAllColoursAreInk()
    {
        // Black and pink on yellow, with something hardly visible beside them.
        GreyImage page(40, 20, 230);
        for (int x = 4; x < 12; ++x) {
            page.row(8)[x] = 20;
            page.row(8)[x + 12] = 140;
            page.row(8)[x + 24] = 220;
        }
        const std::optional<GreyImage> ink = aliasedInk(page, {2, 2, 38, 18});
        QVERIFY(ink);
        QCOMPARE(ink->width, 36);
        QCOMPARE(ink->at(4, 6), std::uint8_t(0));
        QCOMPARE(ink->at(16, 6), std::uint8_t(0));
        QCOMPARE(ink->at(28, 6), std::uint8_t(255));
        QCOMPARE(ink->at(4, 7), std::uint8_t(255));

        const GreyImage smooth = greyImage(written(u"smooth"_s, 15));
        QVERIFY(!aliasedInk(smooth, {0, 0, smooth.width, smooth.height}));
        // Half of it is another background.
        for (int y = 0; y < 20; ++y) {
            std::fill(page.row(y), page.row(y) + 20, std::uint8_t(90));
        }
        QVERIFY(!aliasedInk(page, {2, 2, 38, 18}));
    }
};

QTEST_MAIN(TextRecognitionLinesTest)
#include "TextRecognitionLinesTest.moc"
