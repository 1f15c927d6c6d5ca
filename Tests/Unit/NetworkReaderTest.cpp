// SPDX-License-Identifier: MIT
// Networks as they stand in trained data: whole, and such as must be refused.

#include "ModelBytes.h"
#include "TextRecognition/Network/Network.h"

#include <QTest>

#include <limits>

using namespace recognition;

namespace {

constexpr int lineHeight = 8;

/// What every layer begins with.
ByteWriter layer(std::string_view type, int inputs = 0)
{
    ByteWriter bytes;
    bytes.put(std::int8_t(0)).text(type).put(std::int8_t(0)).put(std::int8_t(0));
    bytes.put(std::int32_t(0)).put(std::int32_t(inputs)).put(std::int32_t(0)).put(std::int32_t(0));
    return bytes.text("name");
}

ByteWriter series(const std::vector<ByteWriter> &parts, std::string_view type = "Series")
{
    ByteWriter bytes = layer(type);
    bytes.put(std::uint32_t(parts.size()));
    for (const ByteWriter &part : parts) {
        bytes.append(part);
    }
    return bytes;
}

ByteWriter input(int height = lineHeight, int depth = 1)
{
    return layer("Input")
        .put(std::int32_t(1))
        .put(std::int32_t(height))
        .put(std::int32_t(0))
        .put(std::int32_t(depth))
        .put(std::int32_t(0));
}

ByteWriter sized(std::string_view type, int across, int down)
{
    return layer(type).put(std::int32_t(across)).put(std::int32_t(down));
}

ByteWriter weights(int outputs, int inputs, double scale = 0.01)
{
    ByteWriter bytes;
    bytes.put(std::uint8_t(128 | 1)).put(std::uint32_t(outputs)).put(std::uint32_t(inputs + 1));
    bytes.put(std::int8_t(0));
    for (int i = 0; i < outputs * (inputs + 1); ++i) {
        bytes.put(std::int8_t(i % 255 - 128));
    }
    bytes.put(std::uint32_t(outputs));
    for (int i = 0; i < outputs; ++i) {
        bytes.put(scale);
    }
    return bytes;
}

ByteWriter doubles(int outputs, int inputs, double value)
{
    ByteWriter bytes;
    bytes.put(std::uint8_t(128)).put(std::uint32_t(outputs)).put(std::uint32_t(inputs + 1));
    bytes.put(0.0);
    for (int i = 0; i < outputs * (inputs + 1); ++i) {
        bytes.put(value);
    }
    return bytes;
}

ByteWriter softmax(int outputs, int inputs)
{
    return layer("Softmax").append(weights(outputs, inputs));
}

ByteWriter memory(std::string_view type, int cells, int inputs)
{
    ByteWriter bytes = layer(type, inputs);
    bytes.put(std::int32_t(inputs + cells));
    for (int gate = 0; gate < 4; ++gate) {
        bytes.append(weights(cells, inputs + cells));
    }
    return bytes;
}

bool isRead(const ByteWriter &bytes)
{
    ByteReader reader(bytes.bytes());
    return Network::read(reader).has_value();
}

ByteWriter wholeNetwork()
{
    return series(
        {input(), sized("Convolve", 1, 1), layer("Tanh").append(weights(4, 9)),
         sized("Maxpool", 2, 2), series({memory("SummLSTM", 6, 4)}, "XYTranspose"),
         series({memory("LSTM", 5, 6), series({memory("LSTM", 5, 6)}, "RTLReversed")}, "Parallel"),
         softmax(12, 10)});
}

} // namespace

class NetworkReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeNetworksRead()
    {
        const ByteWriter bytes = wholeNetwork();
        ByteReader reader(bytes.bytes());
        const auto network = Network::read(reader);
        QVERIFY(network);
        QVERIFY(!reader.failed());
        QCOMPARE(network->lineHeight(), lineHeight);
        QCOMPARE(network->columnWidth(), 2);
        QCOMPARE(network->codes(), 12);
        GreyImage line(31, lineHeight, 255);
        for (int x = 0; x < line.width; x += 3) {
            line.row(lineHeight / 2)[x] = 0;
        }
        const CodeShares shares = network->shares(network->read({line}).front());
        QCOMPARE(shares.columns, 15);
        QCOMPARE(shares.codes, 12);
        for (int column = 0; column < shares.columns; ++column) {
            double total = 0;
            for (int code = 0; code < shares.codes; ++code) {
                total += double(shares.at(column)[code]);
            }
            QVERIFY(std::abs(total - 1) < 1e-4);
        }
    }

    void partOfANetworkIsNone()
    {
        const ByteWriter whole = wholeNetwork();
        for (std::size_t size = 0; size < whole.bytes().size(); ++size) {
            ByteReader reader(whole.bytes().first(size));
            QVERIFY(!Network::read(reader));
        }
    }

    void inputsOfOtherFormsAreRefused()
    {
        const auto with = [](const ByteWriter &first) {
            return isRead(series({first, sized("Maxpool", 1, 8), softmax(3, 1)}));
        };
        QVERIFY(with(input()));
        QVERIFY(!with(input(0)));
        QVERIFY(!with(input(-8)));
        QVERIFY(!with(input(100000)));
        QVERIFY(!with(input(lineHeight, 3)));
    }

    void outputsAreOneRowOfColumns()
    {
        const auto with = [](const ByteWriter &middle, int depth) {
            return isRead(series({input(), middle, softmax(3, depth)}));
        };
        QVERIFY(with(sized("Maxpool", 3, 8), 1));
        QVERIFY(with(sized("Maxpool", 3, 5), 1));
        QVERIFY(!with(sized("Maxpool", 3, 4), 1));
        QVERIFY(!with(sized("Convolve", 1, 1), 9));
        // A summary along the row leaves no columns.
        QVERIFY(!with(memory("SummLSTM", 4, 1), 4));
        QVERIFY(!with(series({sized("Maxpool", 3, 8), memory("SummLSTM", 4, 1)}), 4));
    }

    void layersThatDoNotFitAreRefused()
    {
        const auto with = [](const std::vector<ByteWriter> &parts) {
            return isRead(series(parts));
        };
        const ByteWriter rows = sized("Maxpool", 1, 8);
        QVERIFY(with({input(), rows, softmax(3, 1)}));
        QVERIFY(!with({input(), rows, softmax(3, 2)}));
        QVERIFY(!with({input(), rows}));
        QVERIFY(!with({rows, softmax(3, 1)}));
        QVERIFY(!with({input(), softmax(3, 1)}));
        QVERIFY(!with({input(), rows, memory("LSTM", 4, 2), softmax(3, 4)}));
        QVERIFY(!with({input(), rows, layer("NoSuchLayer"), softmax(3, 1)}));
        QVERIFY(!with({input(), sized("Maxpool", 0, 8), softmax(3, 1)}));
        QVERIFY(!with({input(), sized("Convolve", -1, 8), rows, softmax(3, 1)}));
        QVERIFY(
            !with({input(), series({sized("Maxpool", 2, 8), sized("Maxpool", 3, 8)}, "Parallel"),
                   softmax(3, 2)}));
        // Each is allowed alone, together they are absurd.
        const ByteWriter wide = sized("Convolve", 16, 16);
        QVERIFY(!with({input(), wide, wide, wide, wide, rows, softmax(3, 1)}));
        const ByteWriter pool = sized("Maxpool", 16, 16);
        QVERIFY(!with({input(), pool, pool, pool, pool, pool, pool, pool, pool, softmax(3, 1)}));
    }

    void deepNestsAreRefused()
    {
        ByteWriter nest = sized("Maxpool", 1, 8);
        for (int depth = 0; depth < 100; ++depth) {
            nest = series({nest});
        }
        QVERIFY(!isRead(series({input(), nest, softmax(3, 1)})));
    }

    void absurdWeightsAreRefused()
    {
        const auto with = [](const ByteWriter &last) {
            return isRead(series({input(), sized("Maxpool", 1, 8), layer("Softmax").append(last)}));
        };
        QVERIFY(with(weights(3, 1)));
        QVERIFY(with(doubles(3, 1, 0.5)));
        QVERIFY(with(doubles(3, 1, 0)));
        QVERIFY(with(doubles(3, 1, std::numeric_limits<double>::denorm_min())));
        for (const double value : {std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity(), 1e300, -1e300}) {
            QVERIFY(!with(weights(3, 1, value)));
            QVERIFY(!with(doubles(3, 1, value)));
        }
        const auto sizes = [](std::uint32_t rows, std::uint32_t columns) {
            return ByteWriter()
                .put(std::uint8_t(128 | 1))
                .put(rows)
                .put(columns)
                .put(std::int8_t(0));
        };
        QVERIFY(!with(sizes(0, 2)));
        QVERIFY(!with(sizes(3, 0)));
        QVERIFY(!with(sizes(3, 1)));
        QVERIFY(!with(sizes(0xFFFFFFFF, 0xFFFFFFFF)));
        QVERIFY(!with(sizes(1 << 16, 1 << 16)));
        QVERIFY(!with(ByteWriter().put(std::uint8_t(1))));
    }
};

QTEST_GUILESS_MAIN(NetworkReaderTest)
#include "NetworkReaderTest.moc"
