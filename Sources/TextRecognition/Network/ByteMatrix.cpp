// SPDX-License-Identifier: MIT
#include "ByteMatrix.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// Flags of how weights are stored.
constexpr int bytes = 1;
constexpr int doubles = 128;

/// One in a byte: activations from -1 to 1 are stored as -127 to 127.
constexpr int one = 127;

/// More weights than this in one layer, longer rows or larger scales are a damaged file: the
/// largest known have a million, 1000 and 1. Sums of products stay within 32 bits and what is made
/// of them within a float's range.
constexpr std::uint64_t mostWeights = 1U << 24U;
constexpr std::uint32_t mostRows = 1U << 16U;
constexpr std::uint32_t mostColumns = 1U << 14U;
constexpr double largestScale = 1000;

/// Rows of smaller weights are empty.
constexpr double smallestWeight = 1e-30;

/// Not for what is not a number, too.
bool isScale(double scale)
{
    return std::fabs(scale) <= largestScale;
}

/// Reads the sizes of a table, whose rows have one column for the bias, and its unused default.
template <typename T>
bool readSizes(ByteReader &reader, Weights &weights)
{
    const auto rows = reader.value<std::uint32_t>();
    const auto columns = reader.value<std::uint32_t>();
    reader.value<T>();
    if (rows == 0 || rows > mostRows || columns < 2 || columns > mostColumns ||
        std::uint64_t(rows) * columns > mostWeights) {
        reader.fail();
        return false;
    }
    weights.outputs = int(rows);
    weights.inputs = int(columns) - 1;
    return !reader.failed();
}

void readBytes(ByteReader &reader, Weights &weights)
{
    if (!readSizes<std::int8_t>(reader, weights)) {
        return;
    }
    const std::size_t count = std::size_t(weights.outputs) * std::size_t(weights.inputs + 1);
    const std::span<const char> values = reader.take(count);
    weights.values.assign(values.begin(), values.end());
    // Training gives -127 to 127 only, which some instructions need.
    std::replace(weights.values.begin(), weights.values.end(), std::int8_t(-128),
                 std::int8_t(-127));
    const auto scales = reader.value<std::uint32_t>();
    // Files made on some machines pad the scales.
    if (scales < std::uint32_t(weights.outputs) || scales > mostWeights) {
        reader.fail();
        return;
    }
    for (std::uint32_t i = 0; i < scales; ++i) {
        const double scale = reader.value<double>() / one;
        if (i < std::uint32_t(weights.outputs)) {
            weights.scales.push_back(float(scale));
            if (!isScale(scale)) {
                reader.fail();
            }
        }
    }
}

void readDoubles(ByteReader &reader, Weights &weights)
{
    if (!readSizes<double>(reader, weights)) {
        return;
    }
    const int columns = weights.inputs + 1;
    const std::span<const char> all =
        reader.take(std::size_t(weights.outputs) * std::size_t(columns) * sizeof(double));
    if (reader.failed()) {
        return;
    }
    std::vector<double> row(static_cast<std::size_t>(columns));
    for (int output = 0; output < weights.outputs; ++output) {
        const std::size_t rowBytes = row.size() * sizeof(double);
        std::memcpy(row.data(), all.data() + std::size_t(output) * rowBytes, rowBytes);
        double largest = 0;
        for (const double value : row) {
            largest = std::max(largest, std::fabs(value));
            if (!isScale(value)) {
                reader.fail();
                return;
            }
        }
        const double scale = largest > smallestWeight ? largest / one : 1;
        for (const double value : row) {
            weights.values.push_back(std::int8_t(std::lround(value / scale)));
        }
        weights.scales.push_back(float(scale / one));
    }
}

} // namespace

Weights Weights::read(ByteReader &reader)
{
    Weights weights;
    const int form = reader.value<std::uint8_t>();
    if ((form & doubles) == 0) {
        reader.fail();
    } else if ((form & bytes) != 0) {
        readBytes(reader, weights);
    } else {
        readDoubles(reader, weights);
    }
    return weights;
}

void Weights::append(const Weights &other)
{
    outputs += other.outputs;
    values.insert(values.end(), other.values.begin(), other.values.end());
    scales.insert(scales.end(), other.scales.begin(), other.scales.end());
}

Weights Weights::padded() const
{
    Weights result = *this;
    result.outputs = paddedTo(outputs, tileOutputs);
    result.values.resize(std::size_t(result.outputs) * std::size_t(inputs + 1), 0);
    result.scales.resize(std::size_t(result.outputs), 0);
    return result;
}

ByteMatrix::ByteMatrix(const Weights &weights, int from, int inputs, bool hasBias)
    : m_inputs(inputs)
    , m_outputs(weights.outputs)
{
    const int rows = paddedTo(m_outputs, tileOutputs);
    const int columns = paddedTo(m_inputs, tileInputs);
    m_tiles.assign(std::size_t(rows) * std::size_t(columns), 0);
    m_biases.assign(std::size_t(rows), 0);
    m_excess.assign(std::size_t(rows), 0);
    for (int output = 0; output < m_outputs; ++output) {
        const std::int8_t *row =
            weights.values.data() + std::size_t(output) * std::size_t(weights.inputs + 1);
        if (hasBias) {
            m_biases[std::size_t(output)] = row[weights.inputs] * one;
        }
        std::int8_t *strip =
            m_tiles.data() + std::size_t(output / tileOutputs) * std::size_t(columns * tileOutputs);
        for (int input = 0; input < m_inputs; ++input) {
            strip[input / tileInputs * tileInputs * tileOutputs +
                  output % tileOutputs * tileInputs + input % tileInputs] = row[from + input];
            m_excess[std::size_t(output)] += 128 * row[from + input];
        }
    }
}

void ByteMatrix::multiply(const std::int8_t *vectors, std::ptrdiff_t vectorStride, int count,
                          std::int32_t *sums) const
{
    addProducts(tiles(), vectors, vectorStride, count, Start::Biases, sums);
}

void ByteMatrix::multiplyAdd(const std::int8_t *vectors, std::ptrdiff_t vectorStride, int count,
                             std::int32_t *sums) const
{
    addProducts(tiles(), vectors, vectorStride, count, Start::Sums, sums);
}

TiledBytes ByteMatrix::tiles() const
{
    return {m_tiles.data(), m_biases.data(), m_excess.data(), sumsSize() / tileOutputs,
            paddedTo(m_inputs, tileInputs) / tileInputs};
}

} // namespace recognition
