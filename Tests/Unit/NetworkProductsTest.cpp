// SPDX-License-Identifier: MIT
// What a network calculates with: products of bytes, and functions of their sums.

#include "TextRecognition/Network/ByteMatrix.h"
#include "TextRecognition/Network/Nonlinearity.h"
#include "TextRecognition/Network/Products.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cmath>

using namespace recognition;

namespace {

constexpr std::size_t indexOf(int i)
{
    return std::size_t(i);
}

std::int8_t randomByte(QRandomGenerator &random)
{
    // The extremes often, as they are where sums in 16 bits would overflow.
    const int choice = random.bounded(4);
    return std::int8_t(choice == 0 ? 127 : choice == 1 ? -127 : random.bounded(-127, 128));
}

Weights randomWeights(QRandomGenerator &random, int outputs, int inputs)
{
    Weights weights;
    weights.outputs = outputs;
    weights.inputs = inputs;
    for (int i = 0; i < outputs * (inputs + 1); ++i) {
        weights.values.push_back(randomByte(random));
    }
    weights.scales.assign(std::size_t(outputs), 1);
    return weights;
}

/// `values` up to whole vectors.
template <typename T>
std::vector<T> padded(std::vector<T> values)
{
    values.resize(std::size_t(paddedTo(int(values.size()), numbersAtOnce)), 0);
    return values;
}

} // namespace

class NetworkProductsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allWaysGiveTheSameSums()
    {
        QRandomGenerator random(1);
        for (const int strips : {1, 2, 4, 7, 9}) {
            for (const int tiles : {1, 3, 8}) {
                for (const int vectors : {1, 2, 3, 4, 5, 11}) {
                    const int inputs = tiles * tileInputs;
                    const int outputs = strips * tileOutputs;
                    // Vectors stand apart by more than their length.
                    const int stride = inputs + 3;
                    std::vector<std::int8_t> weights(std::size_t(outputs * inputs));
                    std::vector<std::int32_t> biases(static_cast<std::size_t>(outputs));
                    std::vector<std::int32_t> excess(std::size_t(outputs), 0);
                    std::vector<std::int8_t> values(std::size_t(vectors * stride));
                    std::vector<std::int32_t> start(std::size_t(vectors * outputs));
                    std::generate(values.begin(), values.end(), [&] { return randomByte(random); });
                    std::generate(start.begin(), start.end(),
                                  [&] { return random.bounded(-1000, 1000); });
                    std::generate(biases.begin(), biases.end(),
                                  [&] { return random.bounded(-1000, 1000); });
                    std::vector<std::int32_t> products(start.size(), 0);
                    for (int output = 0; output < outputs; ++output) {
                        for (int input = 0; input < inputs; ++input) {
                            const std::int8_t weight = randomByte(random);
                            const int strip =
                                output / tileOutputs * tiles * tileOutputs * tileInputs;
                            const int tile = input / tileInputs * tileOutputs * tileInputs;
                            const int within =
                                output % tileOutputs * tileInputs + input % tileInputs;
                            weights[indexOf(strip + tile + within)] = weight;
                            excess[std::size_t(output)] += 128 * weight;
                            for (int v = 0; v < vectors; ++v) {
                                products[indexOf(v * outputs + output)] +=
                                    weight * values[indexOf(v * stride + input)];
                            }
                        }
                    }
                    const TiledBytes matrix{weights.data(), biases.data(), excess.data(), strips,
                                            tiles};
                    std::vector<std::int32_t> onStart = products;
                    std::vector<std::int32_t> onBiases = products;
                    for (int i = 0; i < vectors * outputs; ++i) {
                        onStart[indexOf(i)] += start[indexOf(i)];
                        onBiases[indexOf(i)] += biases[indexOf(i % outputs)];
                    }
                    for (const AddProducts add : waysToAddProducts()) {
                        std::vector<std::int32_t> sums = start;
                        add(matrix, values.data(), stride, vectors, Start::Sums, sums.data());
                        QCOMPARE(sums, onStart);
                        sums = start;
                        add(matrix, values.data(), stride, vectors, Start::Biases, sums.data());
                        QCOMPARE(sums, onBiases);
                    }
                }
            }
        }
    }

    void matricesOfAnySizeMultiply()
    {
        QRandomGenerator random(2);
        for (const int outputs : {1, 15, 16, 17, 70}) {
            for (const int inputs : {1, 3, 4, 9, 50}) {
                const Weights weights = randomWeights(random, outputs, inputs + 5);
                // Columns from the middle.
                const ByteMatrix matrix(weights, 2, inputs, true);
                QCOMPARE(matrix.outputs(), outputs);
                QCOMPARE(matrix.inputs(), inputs);
                constexpr int count = 6;
                const int stride = paddedTo(inputs, tileInputs) + 16;
                std::vector<std::int8_t> vectors(std::size_t(stride * count));
                std::generate(vectors.begin(), vectors.end(), [&] { return randomByte(random); });
                std::vector<std::int32_t> sums(std::size_t(matrix.sumsSize() * count), 12345);
                matrix.multiply(vectors.data(), stride, count, sums.data());
                std::vector<std::int32_t> twice = sums;
                matrix.multiplyAdd(vectors.data(), stride, count, twice.data());
                for (int v = 0; v < count; ++v) {
                    for (int output = 0; output < outputs; ++output) {
                        const std::int8_t *row =
                            weights.values.data() + std::ptrdiff_t(output) * (inputs + 6);
                        int products = 0;
                        for (int input = 0; input < inputs; ++input) {
                            products += row[2 + input] * vectors[indexOf(v * stride + input)];
                        }
                        const int bias = row[inputs + 5] * 127;
                        const auto at = indexOf(v * matrix.sumsSize() + output);
                        QCOMPARE(sums[at], bias + products);
                        QCOMPARE(twice[at], bias + 2 * products);
                    }
                }
            }
        }
    }

    void functionsAreNearTheStandardOnes()
    {
        const auto check = [](Nonlinearity function, double (*expected)(double)) {
            for (int i = -1200; i <= 1200; i += 5) {
                const auto sums = padded(std::vector<std::int32_t>{i});
                const auto scales = padded(std::vector<float>{0.01F});
                std::array<std::int8_t, numbersAtOnce> outputs{};
                applyNonlinearity(function, sums.data(), scales.data(), 1, outputs.data());
                const double exact = std::clamp(expected(i * 0.01), -1.0, 1.0) * 127;
                // Half a step of rounding, and a hundredth.
                QVERIFY2(std::abs(outputs[0] - exact) <= 0.5 + 0.0127,
                         qPrintable(QString::number(i * 0.01)));
            }
        };
        check(Nonlinearity::Linear, [](double x) { return x; });
        check(Nonlinearity::Tanh, [](double x) { return std::tanh(x); });
        check(Nonlinearity::Logistic, [](double x) { return 1 / (1 + std::exp(-x)); });
        check(Nonlinearity::Relu, [](double x) { return std::max(x, 0.0); });
    }

    void cellsFollowTheirGates()
    {
        constexpr int cells = numbersAtOnce;
        for (int i = -600; i <= 600; i += 7) {
            const double x = i * 0.02;
            std::vector<std::int32_t> sums(indexOf(4 * cells), i);
            std::vector<float> scales(indexOf(4 * cells), 0.02F);
            std::vector<float> states(cells, 0.75F);
            std::vector<std::int8_t> outputs(cells);
            stepMemory(sums.data(), scales.data(), cells, states.data(), outputs.data());
            const double gate = 1 / (1 + std::exp(-x));
            const double state = 0.75 * gate + std::tanh(x) * gate;
            // Each function is off by 0.0001 at most.
            QVERIFY(std::abs(states[0] - state) < 0.0003);
            QVERIFY(std::abs(outputs[0] - 127 * std::tanh(state) * gate) <= 0.5 + 0.06);
            QCOMPARE(states[cells - 1], states[0]);
            QCOMPARE(outputs[cells - 1], outputs[0]);
        }
    }

    void sharesAreOfOne()
    {
        QRandomGenerator random(3);
        for (const int count : {1, 2, 15, 16, 17, 111, 1000}) {
            std::vector<std::int32_t> sums(static_cast<std::size_t>(count));
            std::generate(sums.begin(), sums.end(), [&] { return random.bounded(-2000, 2000); });
            sums = padded(sums);
            // Beyond the count stands what would outweigh all.
            std::fill(sums.begin() + count, sums.end(), 100000);
            const std::vector<float> scales(sums.size(), 0.01F);
            std::vector<float> shares(sums.size());
            shareOut(sums.data(), scales.data(), count, shares.data());
            const auto largest =
                std::size_t(std::max_element(sums.begin(), sums.begin() + count) - sums.begin());
            double total = 0;
            for (std::size_t i = 0; i < std::size_t(count); ++i) {
                total += double(shares[i]);
                const double exact = std::exp(0.01 * (sums[i] - sums[largest]));
                QVERIFY(std::abs(double(shares[i] / shares[largest]) / exact - 1) < 2e-5);
            }
            QVERIFY(std::abs(total - 1) < 1e-4);
        }
    }
};

QTEST_GUILESS_MAIN(NetworkProductsTest)
#include "NetworkProductsTest.moc"
