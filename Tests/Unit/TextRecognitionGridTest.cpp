// SPDX-License-Identifier: MIT
// Blocks of fixed pitch: found by their ink, read cell by cell. Pictures are drawn here.

#include "TextRecognition/Comb.h"
#include "TextRecognition/GridCells.h"
#include "TextRecognition/GridVote.h"
#include "TextRecognition/Grids.h"
#include "TextRecognition/Marks.h"
#include "TextRecognition/Network/CellDecoder.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

const QStringList listing{
    u"drwxr-xr-x  3 root root    17 Oct 19  2025 changelog"_s,
    u"-rw-r--r-- 12 root root   683 Apr 12 09:32 README.txt"_s,
    u"?"_s,
    u"    ^^^^^^^^^^^^ ---- ===="_s,
    u"lrwxrwxrwx  2 root root    69 Apr 18  2024 share -> ../usr"_s,
};

QImage drawn(const QStringList &lines, const QString &family, const QColor &ink,
             const QColor &paper, int pixels = 14, QFont::Weight weight = QFont::Normal)
{
    QFont font(family);
    font.setPixelSize(pixels);
    font.setWeight(weight);
    const QFontMetrics metrics(font);
    QImage image(700, 20 + int(lines.size()) * metrics.lineSpacing(), QImage::Format_RGB32);
    image.fill(paper);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(ink);
    for (int i = 0; i < lines.size(); ++i) {
        painter.drawText(10, 10 + metrics.ascent() + i * metrics.lineSpacing(), lines[i]);
    }
    return image;
}

std::vector<Grid> gridsOf(const GreyImage &page)
{
    const std::vector<TextLine> lines = findLines(findMarks(page));
    std::vector<const TextLine *> pointers;
    for (const TextLine &line : lines) {
        pointers.push_back(&line);
    }
    return findGrids(page, pointers);
}

/// The cells with ink of a line, as a text of noughts and blanks.
QString pattern(const std::vector<int> &columns)
{
    QString text;
    for (const int column : columns) {
        text.append(QString(column - text.size(), u' '));
        text.append(u'0');
    }
    return text;
}

QString patternOf(QString line)
{
    for (QChar &c : line) {
        c = c == u' ' ? u' ' : u'0';
    }
    return line;
}

} // namespace

class TextRecognitionGridTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void combFindsTheCells();
    void everyRowAndBlankIsKept_data();
    void everyRowAndBlankIsKept();
    void smallTypeThatTouchesIsAGrid();
    void proportionalTextIsNoGrid();
    void theSameCharacterHasOneShape();
    void cellsHoldOneCharacterEach();
};

void TextRecognitionGridTest::combFindsTheCells()
{
    // Letters five pixels wide in cells of 7.5, from 3 on.
    std::vector<float> profile(600, 0);
    for (double left = 3; left + 7.5 < 600; left += 7.5) {
        for (int x = int(left + 1.25); x < int(left + 6.25); ++x) {
            profile[std::size_t(x)] = 1;
        }
    }
    const Comb comb = bestComb(profile, {5, 12});
    QVERIFY(std::abs(comb.pitch - 7.5) < 0.05);
    QVERIFY(comb.inkShare < 0.1);
    QVERIFY(inkAtBoundaries(profile, 6.1, 0) > 0.5);
    QCOMPARE(bestComb(std::vector<float>(100, 0), {5, 12}).pitch, 0.0);
}

void TextRecognitionGridTest::everyRowAndBlankIsKept_data()
{
    QTest::addColumn<QColor>("ink");
    QTest::addColumn<QColor>("paper");
    QTest::newRow("dark on light") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("light on dark") << QColor(0xd0, 0xd0, 0xd0) << QColor(0x20, 0x20, 0x20);
    QTest::newRow("blue on black") << QColor(0x60, 0x60, 0xff) << QColor(Qt::black);
}

void TextRecognitionGridTest::everyRowAndBlankIsKept()
{
    QFETCH(QColor, ink);
    QFETCH(QColor, paper);
    const GreyImage page = greyImage(drawn(listing, u"DejaVu Sans Mono"_s, ink, paper));
    const std::vector<Grid> grids = gridsOf(page);
    QCOMPARE(grids.size(), std::size_t(1));
    const std::vector<GridLine> lines = gridLines(page, grids.front());
    QStringList patterns;
    QStringList expected;
    for (const GridLine &line : lines) {
        patterns.append(pattern(line.columns));
    }
    for (const QString &line : listing) {
        expected.append(patternOf(line));
    }
    QCOMPARE(patterns, expected);
}

void TextRecognitionGridTest::smallTypeThatTouchesIsAGrid()
{
    const QStringList prose{
        u"Matches any differential equation that can be rewritten with smaller"_s,
        u"order. Only derivatives of the function alone, with respect to just a"_s,
        u"single variable are considered, and only in them should it ever appear"_s,
        u"where measurements of something warm may well seem somewhat swollen now"_s,
        u"and assertions handle what remains of many common mammoth summaries"_s,
    };
    const GreyImage page =
        greyImage(drawn(prose, u"DejaVu Sans Mono"_s, Qt::white, Qt::black, 10, QFont::Bold));
    const std::vector<Grid> grids = gridsOf(page);
    QCOMPARE(grids.size(), std::size_t(1));
    QCOMPARE(grids.front().rows.size(), std::size_t(prose.size()));
    QCOMPARE(grids.front().columns, int(prose[3].size()));
}

void TextRecognitionGridTest::proportionalTextIsNoGrid()
{
    const QStringList prose{u"Geef de inhoud minder gedetailleerd weer"_s,
                            u"The quick brown fox jumps over the lazy dog again"_s,
                            u"Selecteer datums en tijden voor alle bestanden"_s,
                            u"Bestandssysteem, opmaak en oriëntatie van pagina’s"_s};
    for (const QString &family : {u"DejaVu Sans"_s, u"Noto Sans"_s}) {
        QVERIFY(gridsOf(greyImage(drawn(prose, family, Qt::black, Qt::white))).empty());
    }
}

void TextRecognitionGridTest::theSameCharacterHasOneShape()
{
    // In cells of whole pixels, as terminals set type.
    QImage image(300, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(u"DejaVu Sans Mono"_s);
    font.setPixelSize(14);
    painter.setFont(font);
    const QStringList rows{u"0O0O0O0O0O0O 0l1I0l1I0l1I"_s, u"O0O0O0O0O0O0 l0l1I0l1I0l1"_s,
                           u"gypqgypqgypq 0l1I0l1I0l1I"_s, u"O0O0O0O0O0O0 l0l1I0l1I0l1"_s};
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows[row].size(); ++column) {
            painter.drawText(10 + 9 * column, 25 + 18 * row, rows[row].mid(column, 1));
        }
    }
    painter.end();
    const GreyImage page = greyImage(image);
    const std::vector<Grid> grids = gridsOf(page);
    QCOMPARE(grids.size(), std::size_t(1));
    const auto shapes = cellShapes(grids.front(), gridLines(page, grids.front()));
    QCOMPARE(shapes.size(), std::size_t(4));
    QCOMPARE(shapes[0][0], shapes[0][2]);
    QCOMPARE(shapes[0][0], shapes[1][1]);
    QVERIFY(shapes[0][0] != shapes[0][1]);
    QVERIFY(shapes[0][13] != shapes[0][14]);
    QVERIFY(shapes[0][14] != shapes[0][15]);
}

void TextRecognitionGridTest::cellsHoldOneCharacterEach()
{
    // Nothing was trained here: a network that knows no alphabet has nothing to say.
    CodeShares shares;
    shares.columns = 4;
    shares.codes = 3;
    shares.shares.assign(std::size_t(shares.columns) * std::size_t(shares.stride()), 0.1F);
    const Alphabet none;
    const CellCharacters characters(none, shares.codes, 0);
    QCOMPARE(characters.size(), std::size_t(0));
    QVERIFY(decodeCells(shares, {{0, 2}, {2, 4}}, characters).scores.empty());
}

QTEST_MAIN(TextRecognitionGridTest)
#include "TextRecognitionGridTest.moc"
