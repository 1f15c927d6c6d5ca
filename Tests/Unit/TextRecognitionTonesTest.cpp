// SPDX-License-Identifier: MIT
// The greys of letters and of what they stand on, where they change within a line.

#include "TextRecognition/Tones.h"

#include <QTest>

#include <algorithm>

using namespace recognition;

namespace {

constexpr int letterHeight = 12;
constexpr int letterWidth = 6;
constexpr std::uint8_t paper = 31;

/// A dark line, on which groups of strokes are drawn from the left.
struct Drawing
{
    GreyImage page{400, 20, paper};
    TextLine line;
    int end = 10;

    Drawing() { line.letterHeight = letterHeight; }

    void add(int letters, std::uint8_t ink, int height = letterHeight)
    {
        for (int i = 0; i < letters; ++i) {
            const int top = 4 + letterHeight - height;
            for (int y = top; y < top + height; ++y) {
                page.row(y)[end + 2] = ink;
                page.row(y)[end + 3] = ink;
            }
            Mark mark;
            mark.box = {end, top, end + letterWidth, top + height};
            line.marks.push_back(mark);
            line.box.unite(mark.box);
            end += letterWidth + 1;
        }
        end += letterHeight;
    }
};

} // namespace

class TextRecognitionTonesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsOfOneColourAreOneStretch()
    {
        Drawing drawing;
        drawing.add(6, 214);
        drawing.add(8, 205);
        const std::vector<Stretch> stretches = stretchesOf(drawing.page, drawing.line);
        QCOMPARE(stretches.size(), std::size_t(1));
        QCOMPARE(stretches.front().tones.background, int(paper));
        QCOMPARE(stretches.front().tones.ink, 214);
    }

    void wordsOfAnotherColourKeepTheirInk_data()
    {
        QTest::addColumn<int>("ink");
        QTest::newRow("blue") << 110;
        QTest::newRow("red, five times fainter") << 69;
    }

    void wordsOfAnotherColourKeepTheirInk()
    {
        QFETCH(int, ink);
        Drawing drawing;
        drawing.add(6, 214);
        const int border = drawing.end - letterHeight / 2;
        drawing.add(8, std::uint8_t(ink));
        const std::vector<Stretch> stretches = stretchesOf(drawing.page, drawing.line);
        QCOMPARE(stretches.size(), std::size_t(2));
        QCOMPARE(tonesAt(stretches, border - 10).ink, 214);
        QCOMPARE(tonesAt(stretches, border + 10).ink, ink);
        QCOMPARE(tonesAt(stretches, drawing.end).ink, ink);
    }

    void specksAreNoLetters()
    {
        Drawing drawing;
        drawing.add(6, 214);
        drawing.add(1, 69);
        const std::vector<Stretch> stretches = stretchesOf(drawing.page, drawing.line);
        QCOMPARE(stretches.size(), std::size_t(1));
        QCOMPARE(tonesAt(stretches, drawing.end).ink, 214);
    }

    void whatIsShorterThanAWordTakesTheInkBesideIt()
    {
        Drawing drawing;
        drawing.add(6, 214);
        drawing.add(2, 110);
        const std::vector<Stretch> stretches = stretchesOf(drawing.page, drawing.line);
        QCOMPARE(tonesAt(stretches, drawing.end).ink, 214);
    }
};

QTEST_GUILESS_MAIN(TextRecognitionTonesTest)
#include "TextRecognitionTonesTest.moc"
