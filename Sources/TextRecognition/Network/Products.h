// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace recognition {

inline constexpr int tileOutputs = 16;
inline constexpr int tileInputs = 4;

/// Weights cut into tiles, as `ByteMatrix` keeps them.
struct TiledBytes
{
    const std::int8_t *tiles;
    /// What each row's sum grows by if all inputs are 128 higher.
    const std::int32_t *excess;
    /// Tiles below each other and beside each other.
    int strips;
    int tilesPerStrip;
};

/// Adds each row's sum of products with each vector to `sums`, of `strips` * 16 per vector. Done
/// with the widest instructions that the processor has; all give the same sums.
void addProducts(const TiledBytes &matrix, const std::int8_t *vectors, std::ptrdiff_t vectorStride,
                 int count, std::int32_t *sums);

} // namespace recognition
