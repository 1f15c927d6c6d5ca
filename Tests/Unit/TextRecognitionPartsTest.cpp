// SPDX-License-Identifier: MIT
// What is looked at again in a line that was read: doubtful parts, places that two models read
// differently, gaps that may hold underscores.

#include "DrawnLine.h"
#include "SampleWord.h"
#include "TextRecognition/DoubtfulParts.h"
#include "TextRecognition/Glyph.h"
#include "TextRecognition/MixedScripts.h"
#include "TextRecognition/Places.h"
#include "TextRecognition/ScriptChooser.h"
#include "TextRecognition/Underscore.h"

#include <QFontInfo>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// A line with ink where the words are.
GreyImage lineOf(const QList<ReadWord> &words, int width)
{
    GreyImage line(width, 30, 255);
    for (const ReadWord &word : words) {
        for (int y = 5; y < 25; ++y) {
            std::fill(line.row(y) + word.box.left, line.row(y) + word.box.right, std::uint8_t(0));
        }
    }
    return line;
}

struct Expected
{
    int left;
    int right;
};

void compareParts(const std::vector<LinePart> &parts, const std::vector<Expected> &expected)
{
    QCOMPARE(parts.size(), expected.size());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        QCOMPARE(parts[i].left, expected[i].left);
        QCOMPARE(parts[i].right, expected[i].right);
    }
}

constexpr double sure = 84;

} // namespace

class TextRecognitionPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubtfulWordsSideBySideAreOnePart()
    {
        const QList<ReadWord> words{word(u"Дисплей"_s, 95, 10, 100), word(u"Ореп"_s, 60, 120, 150),
                                    word(u"СЕ"_s, 70, 160, 190), word(u"открыт"_s, 95, 210, 300)};
        QList<ReadWord> listed = words;
        for (ReadWord &each : listed) {
            each.isListed = true;
        }
        const TwoScripts scripts{Script::Cyrillic, Script::Latin};
        compareParts(doubtfulParts(listed, scripts, lineOf(words, 310), sure), {{110, 200}});
        // What is in no list is doubtful between alphabets that look alike.
        compareParts(doubtfulParts(words, scripts, lineOf(words, 310), sure), {{0, 310}});
        listed.front().isListed = false;
        compareParts(doubtfulParts(listed, scripts, lineOf(words, 310), sure), {{0, 200}});
    }

    void partsAreApartWhereWordsBetweenAreSure()
    {
        const QList<ReadWord> words{word(u"6ط"_s, 60, 10, 40), word(u"باع"_s, 86, 50, 90),
                                    word(u"اا"_s, 30, 100, 130), word(u"إبراز"_s, 93, 150, 220),
                                    word(u"|2"_s, 40, 240, 260)};
        const TwoScripts scripts{Script::Arabic, Script::Latin};
        // The second was read as three words, one of them surely by chance.
        compareParts(doubtfulParts(words, scripts, lineOf(words, 270), sure),
                     {{0, 140}, {230, 270}});
    }

    void quotationMarksGoWithWhatTheyEnclose()
    {
        const QList<ReadWord> words{word(u"변경"_s, 93, 10, 60), word(u"'"_s, 91, 80, 86),
                                    word(u"2DF"_s, 50, 90, 140)};
        const TwoScripts scripts{Script::Korean, Script::Latin};
        compareParts(doubtfulParts(words, scripts, lineOf(words, 150), sure), {{70, 150}});
    }

    void numbersAreAskedForThoughSure()
    {
        const QList<ReadWord> words{word(u"資料"_s, 93, 10, 70), word(u"2918"_s, 93, 90, 150)};
        const GreyImage line = lineOf(words, 160);
        const auto parts =
            doubtfulParts(words, {Script::TraditionalHan, Script::Latin}, line, sure);
        compareParts(parts, {{80, 160}});
        QVERIFY(parts.front().hasNumber);
        QVERIFY(doubtfulParts(words, {Script::Latin, Script::TraditionalHan}, line, sure).empty());
    }

    void partsHoldWhatWasNotRead()
    {
        // Of 13:44 the last digits alone were read.
        const QList<ReadWord> words{word(u"가봉"_s, 93, 10, 110), word(u"44"_s, 90, 180, 195)};
        QList<ReadWord> drawn = words;
        drawn.append({word({}, 0, 140, 155), word({}, 0, 158, 164), word({}, 0, 166, 178)});
        compareParts(
            doubtfulParts(words, {Script::Korean, Script::Latin}, lineOf(drawn, 205), sure),
            {{125, 205}});
    }

    void partsEndInWideGapsNearThem()
    {
        // The model put the second word too far to the right: its first letter was not seen.
        const QList<ReadWord> words{word(u"2918"_s, 93, 10, 100), word(u"資料"_s, 93, 128, 190)};
        QList<ReadWord> drawn = words;
        drawn.append(word({}, 0, 114, 124));
        const auto parts =
            doubtfulParts(words, {Script::TraditionalHan, Script::Latin}, lineOf(drawn, 200), sure);
        compareParts(parts, {{0, 107}});
    }

    void aLineWithoutWordsHasNoParts()
    {
        QVERIFY(doubtfulParts({}, {}, GreyImage(40, 30, 255), sure).empty());
    }

    void whatOverlapsIsOnePlace()
    {
        const Reading one{u"a"_s, {word(u"ab"_s, 90, 0, 40), word(u"c"_s, 60, 60, 80)}};
        const Reading two{u"b"_s, {word(u"x"_s, 50, 0, 18), word(u"y"_s, 70, 22, 40)}};
        std::vector<Place> places = placesOf(one, two);
        QCOMPARE(places.size(), std::size_t(2));
        std::sort(places.begin(), places.end(),
                  [](const Place &a, const Place &b) { return a.box.left < b.box.left; });
        QCOMPARE(places[0].base.size(), 1);
        QCOMPARE(places[0].other.size(), 2);
        QCOMPARE(confidence(places[0].other), 60.0);
        QVERIFY(places[1].other.isEmpty());
        QVERIFY(placesOf({}, {}).empty());
    }

    void lettersOfOtherScriptsTellThem()
    {
        const auto score = [](const QString &text, Script script) {
            return scriptScore({{}, {word(text, 90, 0, 100)}}, script);
        };
        QVERIFY(score(u"направление"_s, Script::Cyrillic) > 80);
        QCOMPARE(score(u"Сору"_s, Script::Cyrillic), 0.0);
        QCOMPARE(score(u"direction"_s, Script::Cyrillic), 0.0);
        // All its letters look Latin, but no list would have it by chance.
        ReadWord listed = word(u"отсутствует"_s, 90, 0, 100);
        QCOMPARE(scriptScore({{}, {listed}}, Script::Cyrillic), 0.0);
        listed.isListed = true;
        QVERIFY(scriptScore({{}, {listed}}, Script::Cyrillic) > 80);
        QVERIFY(score(u"数据类型列表"_s, Script::SimplifiedHan) > 70);
    }

    void underscoresAreSeenInGaps_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("gap");
        QTest::addColumn<QString>("after");
        for (const QString &family : {u"DejaVu Sans Mono"_s, u"DejaVu Sans"_s}) {
            const auto row = [&family](const char *name, const QString &before, const QString &gap,
                                       const QString &after) {
                QTest::addRow("%s in %s", name, qPrintable(family))
                    << family << before << gap << after;
            };
            row("one", u"cursor"_s, u"_"_s, u"count"_s);
            row("after a blank", u"def"_s, u" _"_s, u"init"_s);
            row("before a blank", u"of"_s, u"_ "_s, u"none"_s);
            row("a blank", u"GNU"_s, u" "_s, u"License"_s);
            row("a full stop", u"end"_s, u". "_s, u"New"_s);
            row("a dash", u"one"_s, u" - "_s, u"two"_s);
        }
    }

    void underscoresAreSeenInGaps()
    {
        QFETCH(QString, family);
        QFETCH(QString, before);
        QFETCH(QString, gap);
        QFETCH(QString, after);
        if (QFontInfo(QFont(family)).family() != family) {
            QSKIP("needs the font");
        }
        QFont font(family);
        font.setPixelSize(40);
        const QFontMetrics metrics(font);
        const GreyImage line = drawnLine(before + gap + after, family);
        const int left = 20 + metrics.horizontalAdvance(before);
        const Box inked = inkIn(line, {0, 0, line.width, line.height});
        const Gap seen =
            gapAt(line, {left, inked.top, left + metrics.horizontalAdvance(gap), inked.bottom});
        QCOMPARE(seen.underscores, gap.contains(u'_') ? u"_"_s : QString());
        if (gap.contains(u'_')) {
            QCOMPARE(seen.blankBefore, gap.startsWith(u' '));
            QCOMPARE(seen.blankAfter, gap.endsWith(u' '));
        }
    }

    void aLineUnderWordsIsNoUnderscore()
    {
        GreyImage line = drawnLine(u"two words"_s, u"DejaVu Sans"_s);
        for (int y = 56; y < 59; ++y) {
            std::fill(line.row(y) + 20, line.row(y) + line.width - 20, std::uint8_t(0));
        }
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(40);
        const int left = 20 + QFontMetrics(font).horizontalAdvance(u"two"_s);
        QVERIFY(gapAt(line, {left, 20, left + 14, 60}).underscores.isEmpty());
    }
};

QTEST_MAIN(TextRecognitionPartsTest)
#include "TextRecognitionPartsTest.moc"
