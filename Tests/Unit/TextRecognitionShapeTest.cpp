// SPDX-License-Identifier: MIT
// The kind of writing, told by the looks of a line before anything is read.

#include "TextRecognition/LineImage.h"
#include "TextRecognition/ScriptShape.h"

#include <QTest>

#include <functional>
#include <numeric>

using namespace recognition;

namespace {

constexpr int letter = preparedLetterHeight;
constexpr int letters = 12;

void draw(GreyImage &picture, int left, int top, int width, int height)
{
    for (int y = top; y < top + height; ++y) {
        std::fill_n(picture.row(y) + left, width, std::uint8_t(0));
    }
}

/// A line of letters, one every `pitch` columns, that `drawLetter` draws into a picture at a
/// column.
GreyImage lineOfLetters(int pitch, const std::function<void(GreyImage &, int, int)> &drawLetter)
{
    GreyImage picture((letters + 1) * letter, 2 * letter, 255);
    for (int i = 0; i < letters; ++i) {
        drawLetter(picture, letter / 2 + i * pitch, i);
    }
    return picture;
}

double share(const GreyImage &picture, WritingKind kind)
{
    return kindShares(shapeFeatures(picture, letter))[std::size_t(kind)];
}

} // namespace

class TextRecognitionShapeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyPicturesHaveNoFeatures()
    {
        const ShapeFeatures none{};
        QCOMPARE(shapeFeatures(GreyImage(), letter), none);
        QCOMPARE(shapeFeatures(GreyImage(100, 40, 255), letter), none);
    }

    void sharesAddUpToOne()
    {
        const GreyImage picture = lineOfLetters(letter, [](GreyImage &line, int left, int) {
            draw(line, left, letter / 2, 4, letter);
        });
        const KindShares shares = kindShares(shapeFeatures(picture, letter));
        const double sum = std::accumulate(shares.begin(), shares.end(), 0.0);
        QVERIFY(std::abs(sum - 1) < 1e-9);
        QVERIFY(std::all_of(shares.begin(), shares.end(), [](double s) { return s >= 0; }));
    }

    void narrowLettersOfFewStrokesAreLatin()
    {
        // n and l, by turns: two stems under a bar, and one high stem.
        const GreyImage picture = lineOfLetters(18, [](GreyImage &line, int left, int i) {
            if (i % 2 == 0) {
                draw(line, left, letter - 8, 13, 3);
                draw(line, left, letter - 8, 4, letter / 2 + 8);
                draw(line, left + 9, letter - 8, 4, letter / 2 + 8);
            } else {
                draw(line, left + 4, letter / 2, 4, letter);
            }
        });
        QVERIFY(share(picture, WritingKind::LatinOrCyrillic) > 0.5);
    }

    void squaresOfManyStrokesAreChinese()
    {
        // A box with bars across and a stem through the middle.
        const GreyImage picture = lineOfLetters(letter, [](GreyImage &line, int left, int) {
            for (int bar = 0; bar < 5; ++bar) {
                draw(line, left, letter / 2 + bar * 7, letter - 4, 3);
            }
            for (const int stem : {0, letter / 2 - 3, letter - 7}) {
                draw(line, left + stem, letter / 2, 3, letter + 1);
            }
        });
        QVERIFY(share(picture, WritingKind::Chinese) > 0.5);
    }

    void scriptsBelongToKinds()
    {
        QCOMPARE(kindOf(Script::Cyrillic), kindOf(Script::Latin));
        QCOMPARE(kindOf(Script::Japanese), kindOf(Script::TraditionalHan));
        QVERIFY(kindOf(Script::Korean) != kindOf(Script::SimplifiedHan));
    }
};

QTEST_GUILESS_MAIN(TextRecognitionShapeTest)
#include "TextRecognitionShapeTest.moc"
