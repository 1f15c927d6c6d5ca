// SPDX-License-Identifier: MIT
#include "Products.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace recognition {

namespace {

constexpr std::ptrdiff_t tileSize = std::ptrdiff_t(tileOutputs) * tileInputs;

void addProductsAnywhere(const TiledBytes &matrix, const std::int8_t *vectors,
                         std::ptrdiff_t vectorStride, int count, Start start, std::int32_t *sums)
{
    const std::ptrdiff_t sumsSize = std::ptrdiff_t(matrix.strips) * tileOutputs;
    for (int i = 0; i < count; ++i, vectors += vectorStride) {
        const std::int8_t *tile = matrix.tiles;
        if (start == Start::Biases) {
            std::copy(matrix.biases, matrix.biases + sumsSize, sums);
        }
        for (int strip = 0; strip < matrix.strips; ++strip, sums += tileOutputs) {
            for (std::ptrdiff_t t = 0; t < matrix.tilesPerStrip; ++t, tile += tileSize) {
                const std::int8_t *inputs = vectors + t * tileInputs;
                for (std::ptrdiff_t output = 0; output < tileOutputs; ++output) {
                    const std::int8_t *weights = tile + output * tileInputs;
                    sums[output] += weights[0] * inputs[0] + weights[1] * inputs[1] +
                                    weights[2] * inputs[2] + weights[3] * inputs[3];
                }
            }
        }
    }
}

#if defined(__x86_64__)

int fourBytes(const std::int8_t *bytes)
{
    int value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// The instruction multiplies signed bytes with unsigned ones whose pairs of products must fit
/// 16 bits: the signs move from the inputs to the weights, which -127 to 127 allows.
__attribute__((target("avx2"))) void addProductsAvx2(const TiledBytes &matrix,
                                                     const std::int8_t *vectors,
                                                     std::ptrdiff_t vectorStride, int count,
                                                     Start start, std::int32_t *sums)
{
    const __m256i ones = _mm256_set1_epi16(1);
    for (int i = 0; i < count; ++i, vectors += vectorStride) {
        const std::int8_t *tile = matrix.tiles;
        const std::int32_t *from = start == Start::Biases ? matrix.biases : sums;
        for (int strip = 0; strip < matrix.strips;
             ++strip, sums += tileOutputs, from += tileOutputs) {
            auto *low = reinterpret_cast<__m256i *>(sums);
            auto *high = reinterpret_cast<__m256i *>(sums + 8);
            __m256i lowSum = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from));
            __m256i highSum = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from + 8));
            for (std::ptrdiff_t t = 0; t < matrix.tilesPerStrip; ++t, tile += tileSize) {
                const __m256i inputs = _mm256_set1_epi32(fourBytes(vectors + t * tileInputs));
                const __m256i sizes = _mm256_abs_epi8(inputs);
                const auto *weights = reinterpret_cast<const __m256i *>(tile);
                const __m256i lowPairs = _mm256_maddubs_epi16(
                    sizes, _mm256_sign_epi8(_mm256_loadu_si256(weights), inputs));
                const __m256i highPairs = _mm256_maddubs_epi16(
                    sizes, _mm256_sign_epi8(_mm256_loadu_si256(weights + 1), inputs));
                lowSum = _mm256_add_epi32(lowSum, _mm256_madd_epi16(lowPairs, ones));
                highSum = _mm256_add_epi32(highSum, _mm256_madd_epi16(highPairs, ones));
            }
            _mm256_storeu_si256(low, lowSum);
            _mm256_storeu_si256(high, highSum);
        }
    }
}

/// Vectors taken together, with as many strips as make 16 sums: they hide the instruction's five
/// cycles. A vector alone has to wait for the weights, so that 8 are enough.
constexpr int vectorsAtOnce = 4;

constexpr int stripsAtOnce(int vectors)
{
    return vectors == 1 ? 8 : 16 / vectors;
}

/// The instruction wants unsigned inputs: they are taken 128 too high, and what that adds is
/// taken off.
template <int Strips, int Vectors>
__attribute__((target("avx512f,avx512bw,avx512vnni"))) inline void
addProductsOfBlock(const TiledBytes &matrix, int strip, const std::int8_t *vectors,
                   std::ptrdiff_t vectorStride, Start start, std::int32_t *sums)
{
    const std::ptrdiff_t sumsStride = std::ptrdiff_t(matrix.strips) * tileOutputs;
    __m512i block[Strips][Vectors];
    for (int s = 0; s < Strips; ++s) {
        const __m512i excess =
            _mm512_loadu_si512(matrix.excess + std::ptrdiff_t(strip + s) * tileOutputs);
        for (int v = 0; v < Vectors; ++v) {
            const std::int32_t *from =
                (start == Start::Biases ? matrix.biases : sums + v * sumsStride) +
                std::ptrdiff_t(strip + s) * tileOutputs;
            block[s][v] = _mm512_sub_epi32(_mm512_loadu_si512(from), excess);
        }
    }
    const std::ptrdiff_t stripSize = std::ptrdiff_t(matrix.tilesPerStrip) * tileSize;
    const std::int8_t *tiles = matrix.tiles + strip * stripSize;
    for (std::ptrdiff_t t = 0; t < matrix.tilesPerStrip; ++t, tiles += tileSize) {
        __m512i inputs[Vectors];
        for (int v = 0; v < Vectors; ++v) {
            const int four = fourBytes(vectors + v * vectorStride + t * tileInputs);
            inputs[v] = _mm512_set1_epi32(int(unsigned(four) ^ 0x80808080U));
        }
        for (int s = 0; s < Strips; ++s) {
            const __m512i weights = _mm512_loadu_si512(tiles + s * stripSize);
            for (int v = 0; v < Vectors; ++v) {
                block[s][v] = _mm512_dpbusd_epi32(block[s][v], inputs[v], weights);
            }
        }
    }
    for (int s = 0; s < Strips; ++s) {
        for (int v = 0; v < Vectors; ++v) {
            _mm512_storeu_si512(sums + v * sumsStride + std::ptrdiff_t(strip + s) * tileOutputs,
                                block[s][v]);
        }
    }
}

template <int Vectors>
__attribute__((target("avx512f,avx512bw,avx512vnni"))) void
addProductsOfVectors(const TiledBytes &matrix, const std::int8_t *vectors,
                     std::ptrdiff_t vectorStride, Start start, std::int32_t *sums)
{
    constexpr int step = stripsAtOnce(Vectors);
    int strip = 0;
    for (; strip + step <= matrix.strips; strip += step) {
        addProductsOfBlock<step, Vectors>(matrix, strip, vectors, vectorStride, start, sums);
    }
    for (; strip < matrix.strips; ++strip) {
        addProductsOfBlock<1, Vectors>(matrix, strip, vectors, vectorStride, start, sums);
    }
}

__attribute__((target("avx512f,avx512bw,avx512vnni"))) void
addProductsVnni(const TiledBytes &matrix, const std::int8_t *vectors, std::ptrdiff_t vectorStride,
                int count, Start start, std::int32_t *sums)
{
    const std::ptrdiff_t sumsStride = std::ptrdiff_t(matrix.strips) * tileOutputs;
    int i = 0;
    for (; i + vectorsAtOnce <= count; i += vectorsAtOnce) {
        addProductsOfVectors<vectorsAtOnce>(matrix, vectors + i * vectorStride, vectorStride, start,
                                            sums + i * sumsStride);
    }
    const std::int8_t *rest = vectors + i * vectorStride;
    std::int32_t *restSums = sums + i * sumsStride;
    switch (count - i) {
    case 3:
        addProductsOfVectors<3>(matrix, rest, vectorStride, start, restSums);
        break;
    case 2:
        addProductsOfVectors<2>(matrix, rest, vectorStride, start, restSums);
        break;
    case 1:
        addProductsOfVectors<1>(matrix, rest, vectorStride, start, restSums);
        break;
    default:
        break;
    }
}

#endif

} // namespace

std::vector<AddProducts> waysToAddProducts()
{
    std::vector<AddProducts> ways;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vnni")) {
        ways.push_back(addProductsVnni);
    }
    if (__builtin_cpu_supports("avx2")) {
        ways.push_back(addProductsAvx2);
    }
#endif
    ways.push_back(addProductsAnywhere);
    return ways;
}

void addProducts(const TiledBytes &matrix, const std::int8_t *vectors, std::ptrdiff_t vectorStride,
                 int count, Start start, std::int32_t *sums)
{
    static const AddProducts fastest = waysToAddProducts().front();
    fastest(matrix, vectors, vectorStride, count, start, sums);
}

} // namespace recognition
