// SPDX-License-Identifier: MIT
// Where text is on a picture and in which order it is read, on pictures drawn here.

#include "TextRecognition/Components.h"
#include "TextRecognition/Edges.h"
#include "TextRecognition/GreyImage.h"
#include "TextRecognition/LineImage.h"
#include "TextRecognition/Lines.h"
#include "TextRecognition/Marks.h"
#include "TextRecognition/ReadingOrder.h"
#include "TextRecognition/Resample.h"
#include "TextRecognition/VerticalText.h"

#include <QFont>
#include <QImage>
#include <QPainter>
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

/// Writes `text` with its baseline's left end at (x, y), in 14 px type.
void write(QImage &image, int x, int y, const QString &text, const QColor &color = Qt::black)
{
    QPainter painter(&image);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(14);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(x, y, text);
}

std::vector<TextLine> linesOf(const QImage &image)
{
    std::vector<TextLine> lines = findLines(findMarks(greyImage(image)));
    std::sort(lines.begin(), lines.end(), [](const TextLine &a, const TextLine &b) {
        return std::tie(a.box.top, a.box.left) < std::tie(b.box.top, b.box.left);
    });
    return lines;
}

Piece piece(int left, int top, int width, int height = 12)
{
    return {{left, top, left + width, top + height}, height, false};
}

} // namespace

class TextRecognitionLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormatGivesTheSameGrey_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("rgb32") << QImage::Format_RGB32;
        QTest::newRow("palette") << QImage::Format_Indexed8;
        QTest::newRow("grey") << QImage::Format_Grayscale8;
        QTest::newRow("16 bits of grey") << QImage::Format_Grayscale16;
        QTest::newRow("16 bits a channel") << QImage::Format_RGBA64;
        QTest::newRow("alpha") << QImage::Format_ARGB32_Premultiplied;
        QTest::newRow("bgr") << QImage::Format_BGR888;
        QTest::newRow("mono") << QImage::Format_Mono;
    }

    void everyFormatGivesTheSameGrey()
    {
        QFETCH(QImage::Format, format);
        QImage image = canvas(40, 300);
        for (int y = 0; y < 300; ++y) {
            image.setPixel(y % 40, y, qRgb(0, 0, 0));
        }
        const GreyImage grey = greyImage(image.convertToFormat(format));
        QCOMPARE(grey.width, 40);
        QCOMPARE(grey.height, 300);
        for (int y = 0; y < 300; ++y) {
            QCOMPARE(grey.at(y % 40, y), std::uint8_t(0));
            QVERIFY(grey.at((y + 1) % 40, y) >= 254);
        }
    }

    void transparencyIsWhite()
    {
        QImage image(3, 3, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QCOMPARE(greyImage(image).at(1, 1), std::uint8_t(255));
    }

    void noImageIsEmpty() { QVERIFY(greyImage(QImage()).isEmpty()); }

    void touchingRunsAreOneComponent()
    {
        // A "U" whose arms meet in the last row, and a dot that touches it diagonally.
        const std::vector<Component> found = connectedComponents(
            {{0, 0, 1}, {0, 4, 5}, {1, 0, 1}, {1, 4, 5}, {2, 0, 5}, {3, 5, 6}, {5, 0, 2}});
        QCOMPARE(found.size(), std::size_t(2));
        QCOMPARE(found[0].box, (Box{0, 0, 6, 4}));
        QCOMPARE(found[0].pixels, 10);
        QCOMPARE(found[1].box, (Box{0, 5, 2, 6}));
    }

    void edgesAreAsStrongAsTheStep()
    {
        GreyImage image(4, 1, 10);
        image.row(0)[2] = image.row(0)[3] = 60;
        const GreyImage strength = edgeStrength(image);
        QCOMPARE(strength.pixels, (std::vector<std::uint8_t>{0, 50, 50, 0}));
    }

    void longStraightEdgesAreRules()
    {
        QImage image = canvas(200, 60);
        QPainter painter(&image);
        painter.fillRect(10, 30, 180, 1, Qt::black);
        painter.fillRect(10, 10, 20, 1, Qt::black);
        painter.end();
        const auto rules = straightRules(greyImage(image), 10);
        QCOMPARE(rules[30 * 200 + 100], std::uint8_t(1));
        QCOMPARE(rules[10 * 200 + 20], std::uint8_t(0));
    }

    void eachLineIsFoundOnce_data()
    {
        QTest::addColumn<QColor>("paper");
        QTest::addColumn<QColor>("ink");
        QTest::newRow("dark on white") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("white on dark") << QColor(30, 30, 40) << QColor(Qt::white);
        QTest::newRow("faint") << QColor(225, 225, 225) << QColor(200, 200, 200);
        QTest::newRow("colour") << QColor(20, 90, 200) << QColor(255, 240, 120);
    }

    void eachLineIsFoundOnce()
    {
        QFETCH(QColor, paper);
        QFETCH(QColor, ink);
        QImage image = canvas(300, 100, paper);
        write(image, 20, 30, u"Save the file as…"_s, ink);
        write(image, 20, 60, u"Quit, jump: äöü"_s, ink);
        const auto lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(2));
        QVERIFY(lines[0].box.top > 10 && lines[0].box.bottom < 40);
        QVERIFY(lines[0].box.left >= 16 && lines[0].box.left <= 22);
        QVERIFY(lines[1].box.top > 40 && lines[1].box.bottom < 70);
    }

    void outlinesAreNotText()
    {
        QImage image = canvas(300, 120);
        QPainter painter(&image);
        painter.drawRect(10, 10, 280, 100);
        painter.drawRoundedRect(30, 30, 120, 30, 6, 6);
        painter.drawRoundedRect(200, 32, 50, 24, 12, 12);
        painter.end();
        QVERIFY(linesOf(image).empty());
        write(image, 50, 50, u"Cancel"_s);
        const auto lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(1));
        QVERIFY(lines[0].box.left > 40 && lines[0].box.right < 110);
    }

    void distantWordsAreSeparatePieces()
    {
        QImage image = canvas(400, 50);
        write(image, 10, 30, u"Name of file"_s);
        write(image, 250, 30, u"12 kB"_s);
        QCOMPARE(linesOf(image).size(), std::size_t(2));
    }

    void aPictureBesideTwoRowsIsNoLetter()
    {
        QImage image = canvas(300, 60);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(0x7c, 0x4d, 0xff));
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(10, 10, 36, 36);
        painter.end();
        write(image, 56, 24, u"Mara Okafor"_s);
        write(image, 56, 43, u"Did it finish?"_s);
        const std::vector<TextLine> lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(2));
        QVERIFY(lines[0].box.left > 50 && lines[1].box.left > 50);
    }

    void differentSizesAreFoundTogether()
    {
        QImage image = canvas(600, 160);
        QPainter painter(&image);
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(60);
        painter.setFont(font);
        painter.drawText(10, 70, u"Heading"_s);
        painter.end();
        write(image, 10, 120, u"and some small text below it"_s);
        const auto lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(2));
        QVERIFY(lines[0].letterHeight > 2 * lines[1].letterHeight);
    }

    void lettersComeOffAPhotograph()
    {
        QImage image = canvas(400, 120);
        // Hills and dales of grey, a few levels a pixel.
        for (int y = 0; y < 120; ++y) {
            for (int x = 0; x < 400; ++x) {
                const int level = 90 + int(40 * std::sin(x / 9.0) * std::cos(y / 7.0));
                image.setPixel(x, y, qRgb(level, level, level));
            }
        }
        write(image, 40, 60, u"Holiday pictures"_s, Qt::white);
        bool found = false;
        for (const TextLine &line : linesOf(image)) {
            found = found || (line.box.left < 50 && line.box.right > 140 && line.box.top > 40 &&
                              line.box.bottom < 70);
        }
        QVERIFY(found);
    }

    void preparedLinesAreDarkOnWhite()
    {
        QImage image = canvas(200, 50, QColor(40, 40, 60));
        write(image, 10, 30, u"Preferences"_s, QColor(200, 210, 220));
        const GreyImage grey = greyImage(image);
        const auto lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(1));
        const LineImage prepared = lineImage(grey, lines[0]);
        QVERIFY(prepared.contrast > 100);
        const auto [dark, bright] =
            std::minmax_element(prepared.picture.pixels.begin(), prepared.picture.pixels.end());
        QVERIFY(*dark < 20);
        QCOMPARE(*bright, std::uint8_t(255));
        QCOMPARE(prepared.picture.at(0, 0), std::uint8_t(255));
        QVERIFY(prepared.scale > 1.5);
    }

    void selectedWordsAreTurnedRound()
    {
        QImage image = canvas(240, 50);
        write(image, 10, 30, u"normal"_s);
        QPainter(&image).fillRect(70, 12, 100, 26, QColor(20, 60, 180));
        write(image, 74, 30, u"selected"_s, Qt::white);
        const auto lines = linesOf(image);
        QCOMPARE(lines.size(), std::size_t(1));
        const LineImage prepared = lineImage(greyImage(image), lines[0]);
        const auto dark =
            std::count_if(prepared.picture.pixels.begin(), prepared.picture.pixels.end(),
                          [](std::uint8_t v) { return v < 100; });
        // Ink is a small part of a line of text, but the larger part of a selection left as it is.
        QVERIFY(dark * 4 < qsizetype(prepared.picture.pixels.size()));
    }

    void resampledPicturesKeepTheirGreys()
    {
        const GreyImage flat(10, 10, 77);
        for (const int size : {1, 3, 10, 25}) {
            const GreyImage other = resampled(flat, size, size);
            QCOMPARE(other.width, size);
            for (const std::uint8_t value : other.pixels) {
                QCOMPARE(int(value), 77);
            }
        }
    }

    void rowsAreReadFromTheTop()
    {
        const std::vector<Row> rows = readingOrder({piece(10, 60, 50), piece(10, 20, 50)});
        QCOMPARE(rows, (std::vector<Row>{{1}, {0}}));
    }

    void cellsStayInTheirRow()
    {
        const std::vector<Row> rows =
            readingOrder({piece(200, 20, 40), piece(10, 20, 80), piece(10, 50, 60),
                          piece(200, 50, 50), piece(10, 80, 90), piece(200, 80, 30)});
        QCOMPARE(rows, (std::vector<Row>{{1, 0}, {2, 3}, {4, 5}}));
    }

    void columnsOfProseAreReadOneAfterTheOther()
    {
        std::vector<Piece> pieces{piece(10, 0, 640, 20)};
        for (int i = 0; i < 4; ++i) {
            pieces.push_back(piece(10, 40 + 20 * i, 300));
        }
        for (int i = 0; i < 4; ++i) {
            pieces.push_back(piece(350, 40 + 20 * i, 300));
        }
        QCOMPARE(readingOrder(pieces),
                 (std::vector<Row>{{0}, {1}, {2}, {3}, {4}, {5}, {6}, {7}, {8}}));
    }

    void aShortFirstLineDoesNotTieColumns()
    {
        std::vector<Piece> pieces{piece(10, 0, 220)};
        for (int i = 1; i < 5; ++i) {
            pieces.push_back(piece(10, 20 * i, 300));
        }
        for (int i = 0; i < 5; ++i) {
            pieces.push_back(piece(350, 20 * i, 300));
        }
        const std::vector<Row> rows = readingOrder(pieces);
        QCOMPARE(rows.size(), std::size_t(10));
        for (std::size_t i = 0; i < rows.size(); ++i) {
            QCOMPARE(rows[i], Row{i});
        }
    }

    void panesWithOtherLinesAreReadOneAfterTheOther()
    {
        std::vector<Piece> pieces;
        for (int i = 0; i < 5; ++i) {
            pieces.push_back(piece(10, 31 * i, 60));
        }
        for (int i = 0; i < 8; ++i) {
            pieces.push_back(piece(200, 5 + 19 * i, 300));
        }
        const std::vector<Row> rows = readingOrder(pieces);
        QCOMPARE(rows.size(), std::size_t(13));
        for (std::size_t i = 0; i < rows.size(); ++i) {
            QCOMPARE(rows[i], Row{i});
        }
    }

    void wordsWithWideBlanksStayInTheirRow()
    {
        // Three of five rows go on beyond the gutter, the others end left of it.
        const std::vector<Piece> pieces{piece(10, 0, 120),  piece(250, 0, 40),  piece(330, 0, 60),
                                        piece(10, 22, 120), piece(250, 22, 90), piece(400, 22, 60),
                                        piece(10, 44, 60),  piece(10, 66, 20),  piece(10, 88, 140),
                                        piece(240, 88, 60), piece(360, 88, 110)};
        QCOMPARE(readingOrder(pieces),
                 (std::vector<Row>{{0, 1, 2}, {3, 4, 5}, {6}, {7}, {8, 9, 10}}));
    }

    void aShortLastRowPartsNoCalendar()
    {
        const std::vector<Piece> pieces{piece(10, 0, 20),  piece(60, 0, 20),   piece(110, 0, 20),
                                        piece(10, 30, 20), piece(60, 30, 20),  piece(110, 30, 20),
                                        piece(10, 60, 20), piece(160, 30, 20), piece(160, 0, 20)};
        QCOMPARE(readingOrder(pieces), (std::vector<Row>{{0, 1, 2, 8}, {3, 4, 5, 7}, {6}}));
    }

    void oneRowIsNoColumn()
    {
        const std::vector<Piece> pieces{piece(10, 0, 60),  piece(150, 0, 60), piece(260, 0, 40),
                                        piece(340, 0, 40), piece(420, 0, 40), piece(500, 0, 40),
                                        piece(10, 22, 50), piece(10, 44, 70), piece(10, 66, 60)};
        QCOMPARE(readingOrder(pieces), (std::vector<Row>{{0, 1, 2, 3, 4, 5}, {6}, {7}, {8}}));
    }

    void rightToLeftTurnsCellsAndColumns()
    {
        std::vector<Piece> pieces{piece(10, 20, 40), piece(200, 20, 40)};
        for (Piece &p : pieces) {
            p.rightToLeft = true;
        }
        QCOMPARE(readingOrder(pieces), (std::vector<Row>{{1, 0}}));
    }

    void verticalWritingIsToldFromLists()
    {
        std::vector<Mark> columns;
        for (int column = 0; column < 3; ++column) {
            for (int i = 0; i < 8; ++i) {
                columns.push_back({{40 * column, 22 * i, 40 * column + 20, 22 * i + 20}});
            }
        }
        QVERIFY(isVertical(columns));
        std::vector<Mark> lines;
        for (int row = 0; row < 3; ++row) {
            for (int i = 0; i < 8; ++i) {
                lines.push_back({{22 * i, 40 * row, 22 * i + 20, 40 * row + 20}});
            }
        }
        QVERIFY(!isVertical(lines));
    }
};

QTEST_MAIN(TextRecognitionLayoutTest)
#include "TextRecognitionLayoutTest.moc"
