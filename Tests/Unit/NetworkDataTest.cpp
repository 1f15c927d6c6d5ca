// SPDX-License-Identifier: MIT
// The parts of trained data: bytes, files, characters and their codes; whole and damaged.

#include "ModelBytes.h"
#include "TextRecognition/Network/Alphabet.h"
#include "TextRecognition/Network/ByteReader.h"
#include "TextRecognition/Network/TrainedData.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

const QStringList letters{u"a 3 Latin"_s,  u"f 3 1,2,3,4,5,6,7,8,9,10 Latin 5 0 5 f"_s,
                          u"i 3 Latin"_s,  u"fi 3 Latin"_s,
                          u"7 8 Common"_s, u"漢 1 Han"_s};
const std::vector<std::vector<int>> letterCodes{{0}, {1}, {2}, {3}, {4}, {5}, {6}, {7}, {8, 9}};

std::optional<Alphabet> alphabetOf(const QByteArray &characters, const ByteWriter &codes)
{
    return Alphabet::read(std::span(characters.constData(), std::size_t(characters.size())),
                          codes.bytes());
}

bool writeFile(const QString &path, std::span<const char> bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(bytes.data(), qint64(bytes.size())) == qint64(bytes.size());
}

/// Trained data with two parts: a network of three bytes and characters to the end.
ByteWriter twoParts(std::int64_t networkAt)
{
    constexpr int parts = 24;
    ByteWriter file;
    file.put(std::uint32_t(parts));
    const std::int64_t start = 4 + parts * 8;
    for (int part = 0; part < parts; ++part) {
        file.put(std::int64_t(part == TrainedData::Network      ? networkAt
                              : part == TrainedData::Characters ? start + 3
                                                                : -1));
    }
    return file.put('n').put('e').put('t').put('c').put('h');
}

} // namespace

class NetworkDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesAreTakenOffTheFront()
    {
        ByteWriter bytes;
        bytes.put(std::int32_t(-5)).text("word").put(1.5).put(std::int8_t(7));
        ByteReader reader(bytes.bytes());
        QCOMPARE(reader.value<std::int32_t>(), -5);
        QVERIFY(reader.text() == "word");
        QCOMPARE(reader.value<double>(), 1.5);
        QCOMPARE(reader.value<std::int8_t>(), std::int8_t(7));
        QVERIFY(!reader.failed());
        QVERIFY(reader.take(0).empty());
        QVERIFY(!reader.failed());
    }

    void pastTheEndAllIsZero()
    {
        ByteWriter bytes;
        bytes.put(std::int16_t(-1));
        ByteReader reader(bytes.bytes());
        QCOMPARE(reader.value<std::int32_t>(), 0);
        QVERIFY(reader.failed());
        // Also what would fit.
        QCOMPARE(reader.value<std::int8_t>(), std::int8_t(0));
        QVERIFY(reader.text().empty());
    }

    void absurdSizesFail()
    {
        ByteWriter bytes;
        bytes.put(std::uint32_t(0xFFFFFFFF)).put(std::int32_t(1));
        ByteReader reader(bytes.bytes());
        QVERIFY(reader.text().empty());
        QVERIFY(reader.failed());
        ByteReader other(bytes.bytes());
        QVERIFY(other.take(std::size_t(-1)).empty());
        QVERIFY(other.failed());
    }

    void partsOfFilesAreRead()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"x.traineddata"_s);
        const ByteWriter file = twoParts(4 + 24 * 8);
        QVERIFY(writeFile(path, file.bytes()));
        TrainedData data = TrainedData::read(path, true);
        const auto part = [&data](TrainedData::Part which) {
            const std::span<const char> bytes = data.part(which);
            return QByteArray(bytes.data(), qsizetype(bytes.size()));
        };
        QCOMPARE(part(TrainedData::Network), QByteArray("net"));
        QCOMPARE(part(TrainedData::Characters), QByteArray("ch"));
        QCOMPARE(part(TrainedData::Words), QByteArray());
        data.drop(TrainedData::Network);
        QCOMPARE(part(TrainedData::Network), QByteArray());
        // Truncated within its last part, and within its table.
        QVERIFY(writeFile(path, file.bytes().first(file.bytes().size() - 1)));
        data = TrainedData::read(path, true);
        QCOMPARE(part(TrainedData::Characters), QByteArray("c"));
        QVERIFY(writeFile(path, file.bytes().first(100)));
        data = TrainedData::read(path, true);
        QCOMPARE(part(TrainedData::Network), QByteArray());
    }

    void placesOutsideTheFileAreEmpty()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"x.traineddata"_s);
        for (const std::int64_t at :
             {std::int64_t(-2), std::int64_t(1) << 40, std::numeric_limits<std::int64_t>::max()}) {
            QVERIFY(writeFile(path, twoParts(at).bytes()));
            const TrainedData data = TrainedData::read(path, true);
            QVERIFY(data.part(TrainedData::Network).empty());
            QCOMPARE(data.part(TrainedData::Characters).size(), std::size_t(2));
        }
        QVERIFY(
            TrainedData::read(folder.filePath(u"none"_s), true).part(TrainedData::Network).empty());
    }

    void charactersAreRead()
    {
        const auto alphabet = alphabetOf(characterList(letters), codeList(letterCodes));
        QVERIFY(alphabet);
        QCOMPARE(alphabet->size(), 9);
        QCOMPARE(alphabet->character(Alphabet::space).text, u" "_s);
        QCOMPARE(alphabet->character(3).text, u"a"_s);
        QVERIFY(!alphabet->character(3).isDigit);
        QVERIFY(alphabet->character(7).isDigit);
        QVERIFY(alphabet->character(4).hasBlanks);
        QVERIFY(!alphabet->character(8).hasBlanks);
        QVERIFY(!alphabet->hasBlanks());
        QCOMPARE(alphabet->codeCount(), 10);
        QCOMPARE(alphabet->longestCode(), 2);
    }

    void codesLeadToCharacters()
    {
        const auto alphabet = alphabetOf(characterList(letters), codeList(letterCodes));
        QVERIFY(alphabet);
        const int one = alphabet->next(0, 3);
        QCOMPARE(alphabet->characterOf(one), 3);
        QVERIFY(!alphabet->goesOn(one));
        const int half = alphabet->next(0, 8);
        QCOMPARE(alphabet->characterOf(half), Alphabet::none);
        QVERIFY(alphabet->goesOn(half));
        QCOMPARE(alphabet->characterOf(alphabet->next(half, 9)), 8);
        QCOMPARE(alphabet->next(half, 8), Alphabet::none);
        QCOMPARE(alphabet->next(0, 9), Alphabet::none);
        QCOMPARE(alphabet->next(0, 1000), Alphabet::none);
    }

    void textsAreSplitLongestFirst()
    {
        const auto alphabet = alphabetOf(characterList(letters), codeList(letterCodes));
        QVERIFY(alphabet);
        QCOMPARE(alphabet->split(u"afia漢"_s).value(), (std::vector<int>{3, 6, 3, 8}));
        QCOMPARE(alphabet->split(u"fa"_s).value(), (std::vector<int>{4, 3}));
        QVERIFY(alphabet->split(QString()).value().empty());
        QVERIFY(!alphabet->split(u"ab"_s));
    }

    void damagedCharactersAreRefused_data()
    {
        QTest::addColumn<QByteArray>("characters");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no number") << QByteArray("x\nNULL 0 Common\n");
        QTest::newRow("too few") << QByteArray("9\nNULL 0 Common\n");
        QTest::newRow("negative") << QByteArray("-1\nNULL 0 Common\n");
        QTest::newRow("too many") << QByteArray("4000000000\nNULL 0 Common\n");
        QTest::newRow("short line") << QByteArray("3\nNULL 0 Common\nJoined 0\nBroken 0 Common\n");
    }

    void damagedCharactersAreRefused()
    {
        QFETCH(QByteArray, characters);
        QVERIFY(!alphabetOf(characters, codeList(letterCodes)));
    }

    void measuresMayStandWithoutAScript()
    {
        const auto alphabet =
            alphabetOf(characterList({u"a 3 1,2,3"_s}), codeList({{0}, {1}, {2}, {3}}));
        QVERIFY(alphabet);
        QVERIFY(alphabet->character(3).hasBlanks);
    }

    void damagedCodesAreRefused()
    {
        const QByteArray characters = characterList(letters);
        QVERIFY(!alphabetOf(
            characters,
            ByteWriter().put(std::uint32_t(1)).put(std::int8_t(1)).put(std::int32_t(1))));
        QVERIFY(!alphabetOf(characters, codeList({{0}, {}})));
        QVERIFY(!alphabetOf(characters, codeList({{0}, std::vector<int>(10, 1)})));
        QVERIFY(!alphabetOf(characters, codeList({{-1}})));
        QVERIFY(!alphabetOf(characters, codeList({{1 << 30}})));
        QVERIFY(!alphabetOf(characters, ByteWriter().put(std::uint32_t(0xFFFFFFFF))));
    }
};

QTEST_GUILESS_MAIN(NetworkDataTest)
#include "NetworkDataTest.moc"
