// SPDX-License-Identifier: MIT
// Words, numbers and the punctuation around them; lists that lead nowhere.

#include "ModelBytes.h"
#include "TextRecognition/Network/WordLists.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

enum Id { A = 3, C, R, T, One, Two, Quote, Dot, Count };

std::optional<Alphabet> alphabet()
{
    const QByteArray characters =
        characterList({u"a 3 Latin"_s, u"c 3 Latin"_s, u"r 3 Latin"_s, u"t 3 Latin"_s,
                       u"1 8 Common"_s, u"2 8 Common"_s, u"' 10 Common"_s, u". 10 Common"_s});
    std::vector<std::vector<int>> codes;
    for (int id = 0; id < Count; ++id) {
        codes.push_back({id});
    }
    return Alphabet::read(std::span(characters.constData(), std::size_t(characters.size())),
                          codeList(codes).bytes());
}

constexpr int word = WordGraph::pattern;

} // namespace

class NetworkWordListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsNumbersAndPunctuation_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isListed");
        const auto row = [](const QString &text, bool isListed) {
            QTest::newRow(qPrintable(text)) << text << isListed;
        };
        row(u"cat"_s, true);
        row(u"car"_s, true);
        row(u"at"_s, true);
        row(u"ca"_s, false);
        row(u"cart"_s, true);
        row(u"carta"_s, false);
        row(u"rat"_s, false);
        row(u"cat."_s, true);
        row(u"cat.."_s, false);
        row(u"'cat'"_s, true);
        row(u"'cat"_s, false);
        row(u"cat'"_s, false);
        row(u"12"_s, true);
        row(u"21"_s, true);
        row(u"1"_s, false);
        row(u"12."_s, true);
        row(u"'21'"_s, true);
        row(u"1a"_s, false);
        row(u"."_s, false);
    }

    void wordsNumbersAndPunctuation()
    {
        QFETCH(QString, text);
        QFETCH(bool, isListed);
        const ByteWriter punctuation =
            wordGraph({{word}, {word, Dot}, {Quote, word, Quote}}, Count);
        const ByteWriter words = wordGraph({{C, A, T}, {C, A, R}, {C, A, R, T}, {A, T}}, Count);
        const ByteWriter numbers = wordGraph({{WordGraph::pattern, WordGraph::pattern}}, Count);
        const WordLists lists(punctuation.bytes(), words.bytes(), numbers.bytes());
        const auto letters = alphabet();
        QVERIFY(letters);
        const auto ids = letters->split(text);
        QVERIFY(ids);
        QCOMPARE(lists.contains(*ids, *letters), isListed);
    }

    void kindsAreTold()
    {
        const ByteWriter punctuation = wordGraph({{word}, {Quote, word, Quote}}, Count);
        const ByteWriter words = wordGraph({{C, A, T}}, Count);
        const ByteWriter numbers = wordGraph({{WordGraph::pattern}}, Count);
        const WordLists lists(punctuation.bytes(), words.bytes(), numbers.bytes());
        const auto letters = alphabet();
        QVERIFY(letters);
        const auto kind = [&](const std::vector<int> &ids) {
            WordLists::Places places = lists.start();
            WordKind last = WordKind::None;
            for (const int id : ids) {
                WordLists::Places next;
                bool mayEnd = false;
                last = lists.follow(places, id, letters->character(id), next, mayEnd);
                places = next;
            }
            return last;
        };
        QCOMPARE(kind({Quote}), WordKind::Punctuation);
        QCOMPARE(kind({C}), WordKind::Listed);
        QCOMPARE(kind({Quote, C}), WordKind::Listed);
        QCOMPARE(kind({One}), WordKind::Number);
        QCOMPARE(kind({R}), WordKind::None);
        QCOMPARE(kind({Alphabet::space}), WordKind::None);
    }

    void listsMayBeAlone()
    {
        const ByteWriter words = wordGraph({{A, T}}, Count);
        const auto letters = alphabet();
        QVERIFY(letters);
        const WordLists lists({}, words.bytes(), {});
        QVERIFY(!lists.isEmpty());
        QVERIFY(lists.contains({A, T}, *letters));
        QVERIFY(!lists.contains({A}, *letters));
        QVERIFY(WordLists({}, {}, {}).isEmpty());
        QVERIFY(!WordLists({}, {}, {}).contains({A}, *letters));
    }

    void damagedListsAreEmpty()
    {
        const ByteWriter whole = wordGraph({{A, T}}, Count);
        QVERIFY(!WordGraph(whole.bytes()).isEmpty());
        for (std::size_t size = 0; size < whole.bytes().size(); ++size) {
            QVERIFY(WordGraph(whole.bytes().first(size)).isEmpty());
        }
        const auto graph = [](std::int16_t mark, std::int32_t letters, std::int32_t count) {
            ByteWriter bytes;
            bytes.put(mark).put(letters).put(count).put(std::uint64_t(0));
            return WordGraph(bytes.bytes()).isEmpty();
        };
        QVERIFY(graph(41, Count, 1));
        QVERIFY(graph(42, 0, 1));
        QVERIFY(graph(42, -1, 1));
        QVERIFY(graph(42, 1 << 30, 1));
        QVERIFY(graph(42, Count, 0));
        QVERIFY(graph(42, Count, -1));
        QVERIFY(graph(42, Count, std::numeric_limits<std::int32_t>::max()));
    }

    void edgesOutOfRangeLeadNowhere()
    {
        const int flagBit = std::bit_width(unsigned(Count));
        ByteWriter bytes;
        bytes.put(std::int16_t(42)).put(std::int32_t(Count)).put(std::int32_t(3));
        // To a node far outside, to itself without an end, and to the last edge, which is none.
        bytes.put(std::uint64_t(A) | ~std::uint64_t(0) << (flagBit + 3));
        bytes.put(std::uint64_t(C) | std::uint64_t(1) << (flagBit + 3));
        bytes.put(std::uint64_t(R) | std::uint64_t(2) << (flagBit + 3));
        const WordGraph graph(bytes.bytes());
        QVERIFY(!graph.isEmpty());
        const std::int64_t a = graph.follow(WordGraph::none, A);
        QCOMPARE(a, std::int64_t(0));
        QCOMPARE(graph.follow(a, A), WordGraph::none);
        const std::int64_t c = graph.follow(WordGraph::none, C);
        QCOMPARE(graph.follow(c, C), c);
        QCOMPARE(graph.follow(c, T), WordGraph::none);
    }
};

QTEST_GUILESS_MAIN(NetworkWordListsTest)
#include "NetworkWordListsTest.moc"
