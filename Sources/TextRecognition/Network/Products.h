// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace recognition {

inline constexpr int tileOutputs = 16;
inline constexpr int tileInputs = 4;

/// Weights cut into tiles, as `ByteMatrix` keeps them.
struct TiledBytes
{
    const std::int8_t *tiles;
    /// What each row's sum starts from.
    const std::int32_t *biases;
    /// What each row's sum grows by if all inputs are 128 higher.
    const std::int32_t *excess;
    /// Tiles below each other and beside each other.
    int strips;
    int tilesPerStrip;
};

/// Whether sums start from the matrix's biases or from what stands there.
enum class Start { Biases, Sums };

/// Adds each row's sum of products with each of `count` vectors, which stand `vectorStride` bytes
/// apart, to `start`; into `sums`, of `strips` * 16 per vector.
using AddProducts = void (*)(const TiledBytes &matrix, const std::int8_t *vectors,
                             std::ptrdiff_t vectorStride, int count, Start start,
                             std::int32_t *sums);

/// The ways to do it that this processor knows, the fastest first. All give the same sums, of
/// weights from -127 to 127.
std::vector<AddProducts> waysToAddProducts();

/// In the fastest way.
void addProducts(const TiledBytes &matrix, const std::int8_t *vectors, std::ptrdiff_t vectorStride,
                 int count, Start start, std::int32_t *sums);

} // namespace recognition
