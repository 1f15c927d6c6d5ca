// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace recognition {

/// The functions that a fully connected layer may end in; outputs are cut to -1 to 1 in any case.
enum class Nonlinearity { Linear, Tanh, Logistic, Relu };

/// All work on 16 numbers at once: counts are rounded up to the next multiple, up to which arrays
/// have to reach.
inline constexpr int numbersAtOnce = 16;

/// A layer's outputs in bytes from its sums of products.
void applyNonlinearity(Nonlinearity function, const std::int32_t *sums, const float *scales,
                       int count, std::int8_t *outputs);

/// One step of `count` cells with long short-term memory: `sums` and `scales` hold their inputs,
/// then their input gates, forget gates and output gates, each `count` long. Renews the cells'
/// `states` and gives their outputs in bytes.
void stepMemory(const std::int32_t *sums, const float *scales, int count, float *states,
                std::int8_t *outputs);

/// Turns sums of products into shares of one (softmax).
void shareOut(const std::int32_t *sums, const float *scales, int count, float *shares);

} // namespace recognition
