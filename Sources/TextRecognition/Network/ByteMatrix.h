// SPDX-License-Identifier: MIT
#pragma once

#include "ByteReader.h"
#include "Products.h"

#include <cstdint>
#include <vector>

namespace recognition {

constexpr int paddedTo(int size, int multiple)
{
    return (size + multiple - 1) / multiple * multiple;
}

/// A layer's weights as trained data holds them: one row of bytes per output, one column per input
/// and a last one for the bias; each row has a scale of its own.
struct Weights
{
    int outputs = 0;
    /// Without the bias.
    int inputs = 0;
    /// `outputs` rows of `inputs` + 1.
    std::vector<std::int8_t> values;
    /// What the sum of products of bytes is multiplied with to give the output.
    std::vector<float> scales;

    /// Weights of floating point are rounded to bytes, as training does for the final models.
    /// Fails `reader` if they are not of a known form.
    static Weights read(ByteReader &reader);
    /// Puts the rows of `other`, of as many inputs, below.
    void append(const Weights &other);
    /// With empty rows up to whole tiles.
    Weights padded() const;
};

/// Some columns of weights, laid out for multiplying them with vectors of bytes at the speed of
/// the processor at hand.
///
/// Vectors reach to `paddedTo(inputs, 4)`, whatever stands there, and sums to
/// `paddedTo(outputs, 16)`.
class ByteMatrix
{
public:
    ByteMatrix() = default;
    /// Columns `from` to `from` + `inputs` - 1 of `weights`, and the bias if `hasBias`.
    ByteMatrix(const Weights &weights, int from, int inputs, bool hasBias);

    int inputs() const { return m_inputs; }
    int outputs() const { return m_outputs; }
    /// The sums of a vector.
    int sumsSize() const { return paddedTo(m_outputs, tileOutputs); }

    /// For each of `count` vectors, which stand `vectorStride` bytes apart: sets `sums`, which
    /// stand `sumsSize` apart, to the bias and the products, or adds the products.
    void multiply(const std::int8_t *vectors, std::ptrdiff_t vectorStride, int count,
                  std::int32_t *sums) const;
    void multiplyAdd(const std::int8_t *vectors, std::ptrdiff_t vectorStride, int count,
                     std::int32_t *sums) const;

private:
    TiledBytes tiles() const;

    int m_inputs = 0;
    int m_outputs = 0;
    /// Tiles of 16 outputs by 4 inputs, an output's 4 inputs side by side; 16 outputs' tiles
    /// follow each other.
    std::vector<std::int8_t> m_tiles;
    /// By padded output.
    std::vector<std::int32_t> m_biases;
    std::vector<std::int32_t> m_excess;
};

} // namespace recognition
