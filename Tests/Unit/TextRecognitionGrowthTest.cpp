// SPDX-License-Identifier: MIT
// What must not grow faster than the picture, counted in steps or compared with the plain way of
// doing the same: times would depend on the machine.

#include "TextRecognition/AlikeNumbers.h"
#include "TextRecognition/BoxGrid.h"
#include "TextRecognition/ColumnBand.h"
#include "TextRecognition/OutlinedText.h"
#include "TextRecognition/ReadingOrder.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <set>

using namespace recognition;

namespace {

Box randomBox(QRandomGenerator &random, int width, int height)
{
    const int left = random.bounded(width);
    const int top = random.bounded(height);
    return {left, top, left + 1 + random.bounded(300), top + 1 + random.bounded(60)};
}

bool touch(const Box &a, const Box &b)
{
    return horizontalOverlap(a, b) >= 0 && verticalOverlap(a, b) >= 0;
}

/// Rows of cells, as a spreadsheet of this size has them.
std::vector<Piece> sheet(int rows, int columns)
{
    std::vector<Piece> pieces;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const int left = column * 96 + 6;
            pieces.push_back({{left, row * 21, left + 40 + row % 7, row * 21 + 12}, 12, false});
        }
    }
    return pieces;
}

} // namespace

class TextRecognitionGrowthTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aGridFindsAllThatTouch()
    {
        QRandomGenerator random(1);
        constexpr int width = 1000;
        constexpr int height = 500;
        BoxGrid grid(width, height);
        std::vector<Box> boxes;
        for (std::size_t i = 0; i < 300; ++i) {
            boxes.push_back(randomBox(random, width, height));
            grid.add(i, boxes.back());
        }
        for (std::size_t i = 0; i < boxes.size(); i += 3) {
            grid.remove(i, boxes[i]);
        }
        for (int round = 0; round < 100; ++round) {
            const Box area = randomBox(random, width, height);
            std::set<std::size_t> found;
            grid.forEachNear(area, [&](std::size_t i) { found.insert(i); });
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                const bool isThere = i % 3 != 0;
                QVERIFY(!isThere || !touch(boxes[i], area) || found.contains(i));
                QVERIFY(isThere || !found.contains(i));
            }
        }
    }

    void aGridLooksNearOnly()
    {
        // A page of letters: what is found for one does not depend on the page's size.
        for (const int size : {1000, 4000}) {
            BoxGrid grid(size, size);
            std::size_t count = 0;
            for (int y = 0; y < size; y += 20) {
                for (int x = 0; x < size; x += 10) {
                    grid.add(count++, {x, y, x + 8, y + 12});
                }
            }
            std::size_t visited = 0;
            grid.forEachNear({500, 500, 508, 512}, [&](std::size_t) { ++visited; });
            QVERIFY(visited > 0);
            QVERIFY2(visited < 200, qPrintable(QString::number(visited)));
        }
    }

    void aGridTakesBoxesBeyondThePage()
    {
        BoxGrid grid(100, 100);
        grid.add(7, {-50, -50, -10, -10});
        grid.add(8, {5000, 5000, 5010, 5010});
        std::set<std::size_t> found;
        grid.forEachNear({-100, -100, 6000, 6000}, [&](std::size_t i) { found.insert(i); });
        QCOMPARE(found, (std::set<std::size_t>{7, 8}));
    }

    void alikeNumbersAreCountedAsOneByOne()
    {
        QRandomGenerator random(3);
        AlikeNumbers numbers;
        std::vector<double> all;
        for (int i = 0; i < 300; ++i) {
            // Some of them equal, some nought.
            all.push_back(random.bounded(200) / 8.0);
            numbers.add(all.back(), double(i));
        }
        numbers.sort();
        for (const double number : all) {
            for (const double share : {0.01, 0.02, 0.5}) {
                std::size_t count = 0;
                double weight = 0;
                for (std::size_t i = 0; i < all.size(); ++i) {
                    if (std::abs(all[i] - number) < share * number) {
                        ++count;
                        weight += double(i);
                    }
                }
                QCOMPARE(numbers.count(number, share), count);
                QCOMPARE(numbers.weight(number, share), weight);
            }
        }
    }

    void aBandTellsTheSidesOfEveryGutter()
    {
        QRandomGenerator random(2);
        for (int round = 0; round < 50; ++round) {
            std::vector<Piece> pieces;
            std::vector<std::size_t> members;
            for (std::size_t i = 0; i < 30; ++i) {
                const int left = random.bounded(3000);
                const int top = random.bounded(40);
                const int height = 8 + random.bounded(10);
                pieces.push_back(
                    {{left, top, left + 10 + random.bounded(60), top + height}, height, false});
                members.push_back(i);
            }
            const ColumnBand band(pieces, members, 40);
            for (const Gap &gap : band.gaps()) {
                QCOMPARE(band.narrow(gap).left, gap.left);
                QCOMPARE(band.narrow(gap).right, gap.right);
                GutterSide left;
                GutterSide right;
                band.addSides(gap, left, right);
                GutterSide trueLeft;
                GutterSide trueRight;
                for (const Piece &piece : pieces) {
                    const bool isLeft = piece.box.right <= gap.left;
                    GutterSide &mine = isLeft ? trueLeft : trueRight;
                    ++mine.pieces;
                    mine.wide += piece.box.width() >= 40 ? 1 : 0;
                    mine.matched +=
                        std::any_of(pieces.begin(), pieces.end(), [&](const Piece &other) {
                            return (other.box.right <= gap.left) != isLeft &&
                                   areOnOneLine(piece, other);
                        });
                }
                QCOMPARE(left.pieces, trueLeft.pieces);
                QCOMPARE(left.wide, trueLeft.wide);
                QCOMPARE(left.matched, trueLeft.matched);
                QCOMPARE(right.pieces, trueRight.pieces);
                QCOMPARE(right.wide, trueRight.wide);
                QCOMPARE(right.matched, trueRight.matched);
            }
        }
    }

    void aBandNarrowsAGutterByWhatStandsInIt()
    {
        const auto piece = [](int left, int right) {
            return Piece{{left, 0, right, 12}, 12, false};
        };
        const std::vector<Piece> pieces{piece(0, 120), piece(180, 300)};
        const ColumnBand band(pieces, {0, 1}, 40);
        const Gap within = band.narrow({100, 200});
        QCOMPARE(within.left, 120);
        QCOMPARE(within.right, 180);
        QCOMPARE(band.narrow({10, 20}).width(), 0);
        QCOMPARE(band.narrow({310, 400}).width(), 90);
    }

    void aWholeSheetIsReadRowByRow()
    {
        const std::vector<Piece> pieces = sheet(200, 80);
        const std::vector<Row> rows = readingOrder(pieces);
        QCOMPARE(rows.size(), std::size_t(200));
        std::size_t next = 0;
        for (const Row &row : rows) {
            QCOMPARE(row.size(), std::size_t(80));
            for (const std::size_t i : row) {
                QCOMPARE(i, next++);
            }
        }
    }
};

QTEST_GUILESS_MAIN(TextRecognitionGrowthTest)
#include "TextRecognitionGrowthTest.moc"
