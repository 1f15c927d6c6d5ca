// SPDX-License-Identifier: MIT
#pragma once

#include "ByteMatrix.h"
#include "Nonlinearity.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace recognition {

/// What passes between the layers of a network: a grid of points, each of `depth` values from -1
/// to 1 in bytes (-127 to 127). A line of text is read along x, from the left.
struct Activations
{
    int width = 0;
    int height = 0;
    int depth = 0;
    std::vector<std::int8_t> values;

    Activations() = default;
    Activations(int columns, int rows, int valuesPerPoint)
        : width(columns)
        , height(rows)
        , depth(valuesPerPoint)
        , values(std::size_t(columns) * std::size_t(rows) * std::size_t(stride()), 0)
    {
    }

    /// Bytes from a point to the next; what is beyond `depth` has no meaning.
    int stride() const { return paddedTo(depth, numbersAtOnce); }
    std::int8_t *at(int x, int y)
    {
        return values.data() + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * stride();
    }
    const std::int8_t *at(int x, int y) const
    {
        return values.data() + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * stride();
    }
};

} // namespace recognition
