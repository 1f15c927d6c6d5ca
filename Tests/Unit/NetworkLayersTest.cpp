// SPDX-License-Identifier: MIT
// The layers of a network, one by one, against plain loops; and how they are put together.

#include "TextRecognition/Network/Convolution.h"
#include "TextRecognition/Network/Layers.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace recognition;

namespace {

Activations randomGrid(int width, int height, int depth, quint32 seed)
{
    QRandomGenerator random(seed);
    Activations grid(width, height, depth);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int i = 0; i < depth; ++i) {
                grid.at(x, y)[i] = std::int8_t(random.bounded(-127, 128));
            }
        }
    }
    return grid;
}

/// Moves everything right and down; zeros come in.
class Shift : public Layer
{
public:
    Shift(int right, int down)
        : m_right(right)
        , m_down(down)
    {
    }
    Lines forward(const Lines &inputs) const override
    {
        return eachOf(inputs, [this](const Activations &input) { return shifted(input); });
    }
    Form output(Form input) const override { return input; }

private:
    Activations shifted(const Activations &input) const
    {
        Activations result(input.width, input.height, input.depth);
        for (int y = m_down; y < input.height; ++y) {
            for (int x = m_right; x < input.width; ++x) {
                const std::int8_t *from = input.at(x - m_right, y - m_down);
                std::copy(from, from + input.depth, result.at(x, y));
            }
        }
        return result;
    }

    int m_right;
    int m_down;
};

/// What `layer` makes of a single line.
Activations through(const Layer &layer, const Activations &grid)
{
    return layer.forward({grid}).front();
}

template <typename... Parts>
Layers layers(std::unique_ptr<Parts>... parts)
{
    Layers result;
    (result.push_back(std::move(parts)), ...);
    return result;
}

Weights weights(int outputs, int inputs, quint32 seed, float scale)
{
    QRandomGenerator random(seed);
    Weights result;
    result.outputs = outputs;
    result.inputs = inputs;
    for (int i = 0; i < outputs * (inputs + 1); ++i) {
        result.values.push_back(std::int8_t(random.bounded(-127, 128)));
    }
    result.scales.assign(std::size_t(outputs), scale);
    return result;
}

/// The values of both at a place, or zeros outside.
int valueAt(const Activations &grid, int x, int y, int i)
{
    return x >= 0 && x < grid.width && y >= 0 && y < grid.height ? grid.at(x, y)[i] : 0;
}

void compare(const Activations &found, const Activations &expected)
{
    QCOMPARE(found.width, expected.width);
    QCOMPARE(found.height, expected.height);
    QCOMPARE(found.depth, expected.depth);
    for (int y = 0; y < found.height; ++y) {
        for (int x = 0; x < found.width; ++x) {
            for (int i = 0; i < found.depth; ++i) {
                QCOMPARE(found.at(x, y)[i], expected.at(x, y)[i]);
            }
        }
    }
}

double logistic(double x)
{
    return 1 / (1 + std::exp(-x));
}

} // namespace

class NetworkLayersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seriesRunInOrder()
    {
        const Activations grid = randomGrid(6, 4, 3, 1);
        const Series series(layers(std::make_unique<Shift>(1, 0), std::make_unique<Shift>(2, 1)));
        compare(through(series, grid), through(Shift(3, 1), grid));
    }

    void parallelOutputsStandSideBySide()
    {
        const Activations grid = randomGrid(5, 3, 17, 2);
        const Parallel parallel(
            layers(std::make_unique<Shift>(0, 0), std::make_unique<Shift>(1, 0)));
        const Activations found = through(parallel, grid);
        QCOMPARE(found.depth, 34);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 5; ++x) {
                for (int i = 0; i < 17; ++i) {
                    QCOMPARE(int(found.at(x, y)[i]), valueAt(grid, x, y, i));
                    QCOMPARE(int(found.at(x, y)[17 + i]), valueAt(grid, x - 1, y, i));
                }
            }
        }
    }

    void turnedLayersRunTheOtherWay()
    {
        const Activations grid = randomGrid(6, 4, 3, 3);
        const auto check = [&grid](Turned::Turn turn, int right, int down, int byX, int byY) {
            const Activations found =
                through(Turned(turn, std::make_unique<Shift>(right, down)), grid);
            QCOMPARE(found.width, grid.width);
            QCOMPARE(found.height, grid.height);
            for (int y = 0; y < grid.height; ++y) {
                for (int x = 0; x < grid.width; ++x) {
                    QCOMPARE(int(found.at(x, y)[2]), valueAt(grid, x - byX, y - byY, 2));
                }
            }
        };
        check(Turned::Turn::FromRight, 2, 1, -2, 1);
        check(Turned::Turn::FromBelow, 2, 1, 2, -1);
        check(Turned::Turn::Transposed, 2, 1, 1, 2);
    }

    void windowsGatherColumnByColumn_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("across");
        QTest::addColumn<int>("down");
        QTest::newRow("grey values") << 9 << 7 << 1 << 1 << 1;
        QTest::newRow("several values") << 6 << 5 << 3 << 1 << 2;
        QTest::newRow("wide") << 20 << 3 << 1 << 3 << 0;
        QTest::newRow("wider than the line") << 2 << 2 << 1 << 5 << 4;
        QTest::newRow("one point") << 1 << 1 << 2 << 1 << 1;
        QTest::newRow("no window") << 4 << 4 << 5 << 0 << 0;
    }

    void windowsGatherColumnByColumn()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, depth);
        QFETCH(int, across);
        QFETCH(int, down);
        const Activations grid = randomGrid(width, height, depth, 4);
        const Activations found = through(Window(across, down), grid);
        QCOMPARE(found.depth, depth * (2 * across + 1) * (2 * down + 1));
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const std::int8_t *value = found.at(x, y);
                for (int atX = x - across; atX <= x + across; ++atX) {
                    for (int atY = y - down; atY <= y + down; ++atY) {
                        for (int i = 0; i < depth; ++i, ++value) {
                            QCOMPARE(int(*value), valueAt(grid, atX, atY, i));
                        }
                    }
                }
            }
        }
    }

    void poolsKeepTheLargest()
    {
        for (const int depth : {1, 16, 19}) {
            const Activations grid = randomGrid(11, 7, depth, 5);
            const Activations found = through(MaxPool(3, 2), grid);
            QCOMPARE(found.width, 3);
            QCOMPARE(found.height, 3);
            for (int y = 0; y < 3; ++y) {
                for (int x = 0; x < 3; ++x) {
                    for (int i = 0; i < depth; ++i) {
                        int largest = -128;
                        for (int k = 0; k < 6; ++k) {
                            largest =
                                std::max(largest, valueAt(grid, 3 * x + k % 3, 2 * y + k / 3, i));
                        }
                        QCOMPARE(int(found.at(x, y)[i]), largest);
                    }
                }
            }
        }
        // What is smaller than a pool becomes one point.
        QCOMPARE(through(MaxPool(3, 3), randomGrid(2, 1, 1, 6)).width, 1);
    }

    void fullyConnectedLayersWeighTheirPoint()
    {
        const float scale = 1.0F / (127 * 127 * 4);
        const Weights own = weights(21, 5, 7, scale);
        const Activations grid = randomGrid(6, 3, 5, 8);
        const Activations found = through(FullyConnected(own, Nonlinearity::Tanh), grid);
        QCOMPARE(found.depth, 21);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 6; ++x) {
                for (int output = 0; output < 21; ++output) {
                    const std::int8_t *row = own.values.data() + std::ptrdiff_t(output) * 6;
                    int sum = row[5] * 127;
                    for (int i = 0; i < 5; ++i) {
                        sum += row[i] * grid.at(x, y)[i];
                    }
                    const double exact = 127 * std::tanh(double(float(sum) * scale));
                    QVERIFY(std::abs(found.at(x, y)[output] - exact) < 0.52);
                }
            }
        }
    }

    void memoryGoesAlongTheRows_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("isSummary");
        QTest::newRow("one row") << 1 << false;
        QTest::newRow("several rows") << 3 << false;
        QTest::newRow("more rows than are read at once") << 70 << false;
        QTest::newRow("summary of one row") << 1 << true;
        QTest::newRow("summary of several") << 3 << true;
    }

    void memoryGoesAlongTheRows()
    {
        QFETCH(int, height);
        QFETCH(bool, isSummary);
        constexpr int inputs = 3;
        constexpr int cells = 5;
        constexpr int width = 80;
        const float scale = 1.0F / (127 * 127);
        std::vector<Weights> gates;
        for (quint32 gate = 0; gate < 4; ++gate) {
            gates.push_back(weights(cells, inputs + cells, 20 + gate, scale));
        }
        const Activations grid = randomGrid(width, height, inputs, 9);
        const Activations found = through(Memory(gates, inputs, isSummary), grid);
        QCOMPARE(found.width, isSummary ? 1 : width);
        QCOMPARE(found.height, height);
        QCOMPARE(found.depth, cells);
        for (int y = 0; y < height; ++y) {
            std::vector<double> states(cells, 0);
            std::vector<int> outputs(cells, 0);
            for (int x = 0; x < width; ++x) {
                const std::vector<int> before = outputs;
                for (int cell = 0; cell < cells; ++cell) {
                    std::array<double, 4> sums{};
                    for (std::size_t gate = 0; gate < 4; ++gate) {
                        const std::int8_t *row =
                            gates[gate].values.data() + std::ptrdiff_t(cell) * (inputs + cells + 1);
                        int sum = row[inputs + cells] * 127;
                        for (int i = 0; i < inputs; ++i) {
                            sum += row[i] * grid.at(x, y)[i];
                        }
                        for (int i = 0; i < cells; ++i) {
                            sum += row[inputs + i] * before[std::size_t(i)];
                        }
                        sums[gate] = double(float(sum) * scale);
                    }
                    double &state = states[std::size_t(cell)];
                    state = state * logistic(sums[2]) + std::tanh(sums[0]) * logistic(sums[1]);
                    outputs[std::size_t(cell)] =
                        int(std::lround(127 * std::tanh(state) * logistic(sums[3])));
                    if (!isSummary || x + 1 == width) {
                        // What is nearly halfway may be rounded either way, and is remembered.
                        const auto value = int(found.at(isSummary ? 0 : x, y)[cell]);
                        QVERIFY(std::abs(value - outputs[std::size_t(cell)]) <= 2);
                    }
                }
            }
        }
    }

    void linesReadTogetherAreReadAsAlone_data()
    {
        QTest::addColumn<QList<int>>("widths");
        QTest::addColumn<int>("height");
        QTest::newRow("two") << QList<int>{70, 90} << 1;
        QTest::newRow("one much shorter, two of a length") << QList<int>{40, 1, 130, 40} << 1;
        QTest::newRow("of several rows") << QList<int>{12, 30} << 3;
        QTest::newRow("more than steps are taken at once") << QList<int>(70, 5) << 1;
        QTest::newRow("none") << QList<int>{} << 1;
    }

    void linesReadTogetherAreReadAsAlone()
    {
        QFETCH(QList<int>, widths);
        QFETCH(int, height);
        std::vector<Weights> gates;
        for (quint32 gate = 0; gate < 4; ++gate) {
            gates.push_back(weights(9, 14, 40 + gate, 1.0F / (127 * 127)));
        }
        for (const bool isSummary : {false, true}) {
            const Series series(
                layers(std::make_unique<Turned>(Turned::Turn::FromRight,
                                                std::make_unique<Memory>(gates, 5, isSummary)),
                       std::make_unique<MaxPool>(2, 1)));
            Lines lines;
            for (const int width : std::as_const(widths)) {
                lines.push_back(randomGrid(width, height, 5, quint32(lines.size())));
            }
            const Lines found = series.forward(lines);
            QCOMPARE(found.size(), lines.size());
            for (std::size_t i = 0; i < lines.size(); ++i) {
                compare(found[i], through(series, lines[i]));
            }
        }
    }

    void convolutionsGiveWhatTheirPartsGive_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("across");
        QTest::addColumn<int>("outputs");
        QTest::newRow("as of a line") << 250 << 36 << 1 << 1 << 16;
        QTest::newRow("with rests") << 101 << 8 << 1 << 2 << 21;
        QTest::newRow("smaller than a pool") << 2 << 1 << 1 << 1 << 16;
        QTest::newRow("of one point") << 1 << 1 << 1 << 3 << 1;
        QTest::newRow("of several values") << 20 << 9 << 2 << 1 << 16;
    }

    void convolutionsGiveWhatTheirPartsGive()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, depth);
        QFETCH(int, across);
        QFETCH(int, outputs);
        const auto parts = [&] {
            return layers(
                std::make_unique<Window>(across, 1),
                std::make_unique<FullyConnected>(
                    weights(outputs, depth * 3 * (2 * across + 1), 30, 1.0F / (127 * 127 * 4)),
                    Nonlinearity::Tanh),
                std::make_unique<MaxPool>(3, 3));
        };
        const Activations grid = randomGrid(width, height, depth, 31);
        const Series apart(parts());
        const Layers together = withConvolutions(parts());
        QCOMPARE(together.size(), std::size_t(1));
        compare(through(*together.front(), grid), through(apart, grid));
        QCOMPARE(together.front()->output({depth, 1, 1}).depth, outputs);
        QCOMPARE(together.front()->output({depth, 1, 1}).columns, 3);
        QCOMPARE(together.front()->output({depth + 1, 1, 1}).depth, 0);
    }

    void convolutionsAreFoundInNestedSeries()
    {
        const auto parts = [](float scale) {
            Layers nested = layers(
                std::make_unique<Window>(1, 1),
                std::make_unique<FullyConnected>(weights(4, 9, 1, scale), Nonlinearity::Tanh));
            return layers(std::make_unique<Series>(std::move(nested)),
                          std::make_unique<MaxPool>(2, 2), std::make_unique<MaxPool>(2, 2));
        };
        QCOMPARE(withConvolutions(parts(1)).size(), std::size_t(2));
        // The largest sum would be the least output.
        QCOMPARE(withConvolutions(parts(-1)).size(), std::size_t(4));
    }

    void formsTellWhatFits()
    {
        const Form line{4, 1, 1};
        const FullyConnected narrow(weights(7, 4, 1, 1), Nonlinearity::Linear);
        QCOMPARE(narrow.output(line).depth, 7);
        QCOMPARE(narrow.output({5, 1, 1}).depth, 0);
        QCOMPARE(Window(1, 1).output(line).depth, 36);
        QCOMPARE(Window(16, 16).output(line).depth, 0);
        QCOMPARE(MaxPool(3, 2).output(line).columns, 3);
        QCOMPARE(MaxPool(3, 2).output(line).rows, 2);
        const Turned turned(Turned::Turn::Transposed, std::make_unique<MaxPool>(3, 2));
        QCOMPARE(turned.output(line).columns, 2);
        QCOMPARE(turned.output(line).rows, 3);
        const Series pools(
            layers(std::make_unique<MaxPool>(16, 1), std::make_unique<MaxPool>(16, 1)));
        QCOMPARE(pools.output(line).depth, 0);
        const Series unfit(
            layers(std::make_unique<Window>(1, 1),
                   std::make_unique<FullyConnected>(weights(7, 4, 1, 1), Nonlinearity::Linear),
                   std::make_unique<Window>(1, 1)));
        QCOMPARE(unfit.output(line).depth, 0);
    }

    void summariesLeaveOneColumn()
    {
        const std::vector<Weights> gates(4, weights(5, 9, 1, 1));
        QCOMPARE(Memory(gates, 4, true).output({4, 3, 3}).columns, Form::all);
        QCOMPARE(Memory(gates, 4, true).output({4, 3, 3}).rows, 3);
        QCOMPARE(Memory(gates, 4, false).output({4, 3, 3}).columns, 3);
        QCOMPARE(Memory(gates, 4, false).output({3, 3, 3}).depth, 0);
        const Series pooled(
            layers(std::make_unique<Memory>(gates, 4, true), std::make_unique<MaxPool>(2, 1)));
        QCOMPARE(pooled.output({4, 3, 3}).columns, Form::all);
    }

    void partsSideBySideAreOfOneSize()
    {
        const auto depth = [](std::unique_ptr<Layer> a, std::unique_ptr<Layer> b) {
            return Parallel(layers(std::move(a), std::move(b))).output({4, 1, 1}).depth;
        };
        const auto pool = [](int across, int down) {
            return std::make_unique<MaxPool>(across, down);
        };
        QCOMPARE(depth(pool(2, 3), pool(2, 3)), 8);
        QCOMPARE(depth(pool(2, 3), pool(2, 2)), 0);
        QCOMPARE(depth(pool(3, 2), pool(2, 2)), 0);
        const std::vector<Weights> gates(4, weights(5, 9, 1, 1));
        QCOMPARE(depth(std::make_unique<Memory>(gates, 4, true),
                       std::make_unique<Memory>(gates, 4, false)),
                 0);
    }
};

QTEST_GUILESS_MAIN(NetworkLayersTest)
#include "NetworkLayersTest.moc"
