// SPDX-License-Identifier: MIT
// Characters that models mix up, told by how they look.

#include "DrawnLine.h"
#include "TextRecognition/Apostrophe.h"
#include "TextRecognition/Glyph.h"

#include <QFontInfo>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// The line's ink as a whole, for lines of one character.
Box placeIn(const GreyImage &line)
{
    return inkIn(line, {0, 0, line.width, line.height});
}

std::optional<Glyph> glyphOf(const QString &character, const QString &family)
{
    const GreyImage line = drawnLine(character, family);
    return glyphAt(line, placeIn(line), line.height);
}

} // namespace

class TextRecognitionGlyphTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inkIsFound()
    {
        GreyImage line(40, 20, 255);
        QVERIFY(inkIn(line, {0, 0, 40, 20}).isEmpty());
        line.row(5)[10] = 0;
        line.row(9)[30] = 0;
        QCOMPARE(inkIn(line, {0, 0, 40, 20}), (Box{10, 5, 31, 10}));
        QCOMPARE(inkIn(line, {0, 0, 20, 20}), (Box{10, 5, 11, 6}));
    }

    void barsReachBelowTheLine_data()
    {
        QTest::addColumn<QString>("family");
        for (const QString &family :
             {u"DejaVu Sans"_s, u"Liberation Sans"_s, u"Noto Sans"_s, u"DejaVu Serif"_s}) {
            if (QFontInfo(QFont(family)).family() == family) {
                QTest::newRow(qPrintable(family)) << family;
            }
        }
    }

    void barsReachBelowTheLine()
    {
        QFETCH(const QString, family);
        const GreyImage line = drawnLine(u"I jump over it |"_s, family);
        const Box inked = placeIn(line);
        const auto first = glyphAt(line, {inked.left, inked.top, inked.left + 4, inked.bottom}, 30);
        const auto last =
            glyphAt(line, {inked.right - 4, inked.top, inked.right, inked.bottom}, 30);
        QVERIFY(first && last);
        QVERIFY(isCapitalI(*first, line, inked));
        QVERIFY(!isCapitalI(*last, line, inked));
    }

    void theNearestGlyphIsTaken()
    {
        GreyImage line(40, 20, 255);
        for (int y = 4; y < 12; ++y) {
            line.row(y)[10] = 0;
            line.row(y)[24] = 0;
            line.row(y)[25] = 0;
        }
        const std::optional<Glyph> glyph = glyphAt(line, {-5, 0, 60, 20}, 10);
        QVERIFY(glyph);
        QCOMPARE(glyph->box, (Box{24, 4, 26, 12}));
        QCOMPARE(glyph->pixels.size(), std::size_t(16));
        QVERIFY(!glyphAt(line, {0, 0, 40, 20}, 1));
        QVERIFY(!glyphAt(line, {0, 14, 40, 20}, 10));
    }

    void smallLIsToldFromItsCapital_data()
    {
        QTest::addColumn<QString>("family");
        for (const QString &family : {u"DejaVu Sans"_s, u"DejaVu Serif"_s, u"DejaVu Sans Mono"_s,
                                      u"Liberation Sans"_s, u"Liberation Mono"_s}) {
            QTest::newRow(qPrintable(family)) << family;
        }
    }

    void smallLIsToldFromItsCapital()
    {
        QFETCH(QString, family);
        if (QFontInfo(QFont(family)).family() != family) {
            QSKIP("needs the font");
        }
        const auto small = glyphOf(u"l"_s, family);
        const auto capital = glyphOf(u"L"_s, family);
        QVERIFY(small && capital);
        QVERIFY(!isSmallL(*capital));
        // A serif's feet are as wide as a capital's: what cannot be told stays as it was read.
        if (family != u"DejaVu Serif"_s) {
            QVERIFY(isSmallL(*small));
        }
    }

    void apostrophesLean()
    {
        const auto lean = [](const QString &text) {
            const GreyImage line = drawnLine(text, u"DejaVu Sans"_s);
            // The middle of three characters, of a line as high as its letters.
            Box place = placeIn(line);
            const int third = place.width() / 3;
            place.left += third;
            place.right -= third;
            return leanOfApostrophe(line, place);
        };
        const auto straight = lean(u"d ' d"_s);
        const auto curled = lean(u"d ’ d"_s);
        QVERIFY(straight && curled);
        QVERIFY(std::abs(*straight) < 0.01);
        QVERIFY(*curled < -0.06);
        QVERIFY(!lean(u"d | d"_s));
        QVERIFY(!lean(u"d   d"_s));
    }

    void apostrophesOfALineAgree()
    {
        Apostrophes apostrophes;
        apostrophes.add(-0.2);
        apostrophes.add(std::nullopt);
        QList<QString> words{u"l'ami"_s, u"d'or"_s};
        apostrophes.settle(words);
        QCOMPARE(words, (QList<QString>{u"l’ami"_s, u"d’or"_s}));

        apostrophes.add(0.0);
        words = {u"l'ami"_s, u"d'or"_s, u"don’t"_s};
        apostrophes.settle(words);
        QCOMPARE(words, (QList<QString>{u"l’ami"_s, u"d'or"_s, u"don't"_s}));

        // One that leans a little stays as it was read.
        Apostrophes doubtful;
        doubtful.add(-0.03);
        words = {u"don’t"_s};
        doubtful.settle(words);
        QCOMPARE(words, QList<QString>{u"don’t"_s});
    }
};

QTEST_MAIN(TextRecognitionGlyphTest)
#include "TextRecognitionGlyphTest.moc"
