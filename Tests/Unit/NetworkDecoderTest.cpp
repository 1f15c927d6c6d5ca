// SPDX-License-Identifier: MIT
// From the shares of codes to characters.

#include "ModelBytes.h"
#include "TextRecognition/Network/Decoder.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

enum Id { A = 3, C, O, T, Han, IdCount };

/// Codes are the characters' numbers, but for one of two codes.
constexpr int hanFirst = 7;
constexpr int hanSecond = 8;
constexpr int nothing = 9;
constexpr int codeCount = 10;
constexpr int space = Alphabet::space;

std::optional<Alphabet> alphabet()
{
    const QByteArray characters = characterList(
        {u"a 3 Latin"_s, u"c 3 Latin"_s, u"o 3 Latin"_s, u"t 3 Latin"_s, u"漢 1 Hangul"_s});
    return Alphabet::read(
        std::span(characters.constData(), std::size_t(characters.size())),
        codeList({{space}, {1}, {2}, {A}, {C}, {O}, {T}, {hanFirst, hanSecond}}).bytes());
}

/// The shares of some codes in a column; the others have next to none.
using Column = std::vector<std::pair<int, float>>;

CodeShares sharesOf(const std::vector<Column> &columns)
{
    CodeShares shares;
    shares.columns = int(columns.size());
    shares.codes = codeCount;
    shares.shares.assign(columns.size() * std::size_t(shares.stride()), 1e-7F);
    for (int column = 0; column < shares.columns; ++column) {
        for (const auto &[code, share] : columns[std::size_t(column)]) {
            shares.at(column)[code] = share;
        }
    }
    return shares;
}

QString textOf(const std::vector<Column> &columns, const WordLists &lists = {{}, {}, {}})
{
    const auto letters = alphabet();
    QString text;
    for (const DecodedCharacter &character :
         decode(sharesOf(columns), nothing, letters.value(), lists)) {
        text += letters->character(character.id).text;
    }
    return text;
}

Column sure(int code)
{
    return {{code, 0.99F}};
}

} // namespace

class NetworkDecoderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsOfOneCharacterAreOne()
    {
        QCOMPARE(textOf({sure(C), sure(C), sure(A), sure(T), sure(T), sure(T)}), u"cat"_s);
    }

    void nothingPartsRepeatedLetters()
    {
        QCOMPARE(textOf({sure(C), sure(O), sure(nothing), sure(O), sure(T)}), u"coot"_s);
        QCOMPARE(textOf({sure(nothing), sure(A), sure(nothing), sure(nothing)}), u"a"_s);
        QCOMPARE(textOf({sure(nothing), sure(nothing)}), QString());
    }

    void blanksAreCharacters() { QCOMPARE(textOf({sure(A), sure(space), sure(T)}), u"a t"_s); }

    void severalCodesMakeACharacter()
    {
        QCOMPARE(textOf({sure(hanFirst), sure(hanSecond)}), u"漢"_s);
        QCOMPARE(textOf({sure(hanFirst), sure(nothing), sure(hanSecond), sure(hanSecond)}),
                 u"漢"_s);
        QCOMPARE(textOf({sure(A), sure(hanFirst), sure(hanFirst), sure(hanSecond), sure(A)}),
                 u"a漢a"_s);
    }

    void placesAreColumns()
    {
        const auto letters = alphabet();
        const auto characters =
            decode(sharesOf({sure(nothing), sure(C), sure(C), sure(nothing), sure(A)}), nothing,
                   letters.value(), {{}, {}, {}});
        QCOMPARE(characters.size(), std::size_t(2));
        QCOMPARE(characters[0].id, int(C));
        QCOMPARE(characters[0].left, 1);
        QCOMPARE(characters[0].right, 3);
        QCOMPARE(characters[1].left, 4);
        QCOMPARE(characters[1].right, 5);
    }

    void certaintyIsThatOfTheWorstColumn()
    {
        const auto letters = alphabet();
        const auto certainty = [&](float share) {
            const auto characters = decode(sharesOf({sure(C), {{C, share}, {T, 0.01F}}}), nothing,
                                           letters.value(), {{}, {}, {}});
            return characters.size() == 1 ? characters[0].certainty : 1;
        };
        QVERIFY(certainty(0.9F) < 0);
        QVERIFY(certainty(0.5F) < certainty(0.9F));
        QVERIFY(certainty(0.1F) < certainty(0.5F));
    }

    void listedWordsAreTakenBeforeUnlistedOnes()
    {
        const ByteWriter words = wordGraph({{C, A, T}}, IdCount);
        const WordLists lists({}, words.bytes(), {});
        const std::vector<Column> nearTie{sure(C), {{O, 0.55F}, {A, 0.44F}}, sure(T)};
        QCOMPARE(textOf(nearTie), u"cot"_s);
        QCOMPARE(textOf(nearTie, lists), u"cat"_s);
        // Not against clear sight.
        const std::vector<Column> clear{sure(C), {{O, 0.99F}, {A, 0.0001F}}, sure(T)};
        QCOMPARE(textOf(clear, lists), u"cot"_s);
    }

    void listedWordsAreMarked()
    {
        const ByteWriter words = wordGraph({{C, A, T}, {A, T}}, IdCount);
        const WordLists lists({}, words.bytes(), {});
        const auto letters = alphabet();
        const auto characters =
            decode(sharesOf({sure(C), sure(A), sure(T), sure(space), sure(A), sure(T)}), nothing,
                   letters.value(), lists);
        QCOMPARE(characters.size(), std::size_t(6));
        QVERIFY(characters[0].startsWord);
        QVERIFY(!characters[1].startsWord);
        QVERIFY(characters[4].startsWord);
        QCOMPARE(characters[0].kind, WordKind::Listed);
        QCOMPARE(characters[5].kind, WordKind::Listed);
    }

    void charactersShareAColumn()
    {
        // Neither has the column to itself, together they do.
        QCOMPARE(textOf({{{C, 0.5F}, {nothing, 0.49F}}, sure(A), {{T, 0.5F}, {nothing, 0.49F}}}),
                 u"cat"_s);
    }

    void whatDoesNotFitIsNothing()
    {
        const auto letters = alphabet();
        const WordLists none({}, {}, {});
        QVERIFY(decode(sharesOf({}), nothing, letters.value(), none).empty());
        QVERIFY(decode(sharesOf({sure(A)}), codeCount, letters.value(), none).empty());
        QVERIFY(decode(sharesOf({sure(A)}), -1, letters.value(), none).empty());
        CodeShares few = sharesOf({sure(A)});
        few.codes = 4;
        QVERIFY(decode(few, 3, letters.value(), none).empty());
        // Shares that are no numbers are unlikely, not harmful.
        CodeShares strange = sharesOf({sure(A), sure(A)});
        std::fill(strange.shares.begin(), strange.shares.end(),
                  std::numeric_limits<float>::quiet_NaN());
        QVERIFY(decode(strange, nothing, letters.value(), none).size() <= 2);
    }
};

QTEST_GUILESS_MAIN(NetworkDecoderTest)
#include "NetworkDecoderTest.moc"
