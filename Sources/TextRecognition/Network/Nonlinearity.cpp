// SPDX-License-Identifier: MIT
#include "Nonlinearity.h"

#include <cstddef>
#include <cstring>

// What is here becomes part of a function for each generation of processors.
#define PART_OF_ALL inline __attribute__((always_inline))

namespace recognition {

namespace {

// Vectors as GCC and Clang know them on any processor. They go by reference, as how they are
// passed by value differs from processor to processor.
using Floats = float __attribute__((vector_size(numbersAtOnce * sizeof(float))));
using Ints = std::int32_t __attribute__((vector_size(numbersAtOnce * sizeof(std::int32_t))));
using Bytes = std::int8_t __attribute__((vector_size(numbersAtOnce)));

/// Cells' states are kept within this, as in training.
constexpr float mostState = 100;

/// Arguments of tanh are cut to this, where its approximation comes to one.
constexpr float largestTanh = 4.97179F;

/// Cut to this before e is raised to them, so that nothing becomes zero.
constexpr float leastExponent = -86;

/// Added to a small number, leaves it rounded in the lowest bits of the sum, whose other bits are
/// those of `roundingBits`.
constexpr float rounding = 12582912.0F;
constexpr std::int32_t roundingBits = 0x4B400000;

PART_OF_ALL void cut(float low, Floats &x, float high)
{
    const Floats lows = low - Floats{};
    const Floats highs = high - Floats{};
    x = x < lows ? lows : x;
    x = x > highs ? highs : x;
}

template <typename To, typename From>
PART_OF_ALL void reinterpret(const From &from, To &to)
{
    static_assert(sizeof(To) == sizeof(From));
    std::memcpy(&to, &from, sizeof to);
}

/// tanh of `x` is `x` / `below`, which is between 1 and 30: divisions are dear, and left to who can
/// do several at once. Padé's approximation, off by less than 0.0001, a hundredth of a byte's step,
/// and next to nothing near zero: one that was off by half as much at most, but everywhere, read
/// worse (lines of the plainer corpus 90.4 → 89.9).
PART_OF_ALL void toTanh(Floats &x, Floats &below)
{
    cut(-largestTanh, x, largestTanh);
    const Floats square = x * x;
    x *= 1 + square * (0.128205128F + square * (0.0027972028F + square * 7.4000074e-6F));
    below = 1 + square * (0.461538462F + square * (0.0233100233F + square * 0.000207200207F));
}

/// The same of the logistic function, between 2 and 60.
PART_OF_ALL void toLogistic(Floats &x, Floats &below)
{
    x *= 0.5F;
    toTanh(x, below);
    x += below;
    below *= 2;
}

/// Two to the whole part, by the exponent's bits, and a polynomial for the rest; off by less than
/// a hundred thousandth of the result.
PART_OF_ALL void toPowerOfE(Floats &x)
{
    cut(leastExponent, x, 0);
    const Floats power = x * 1.44269504F;
    const Floats rounded = power + rounding;
    const Floats rest = (power - (rounded - rounding)) * 0.69314718F;
    const Floats polynomial =
        1 + rest * (1 + rest * (0.5F + rest * (0.16666667F +
                                               rest * (0.041666668F + rest * 0.0083333333F))));
    Ints whole;
    reinterpret(rounded, whole);
    const Ints exponent = (whole - roundingBits + 127) << 23;
    Floats factor;
    reinterpret(exponent, factor);
    x = polynomial * factor;
}

PART_OF_ALL void load(const std::int32_t *sums, const float *scales, Floats &x)
{
    Ints whole;
    std::memcpy(&whole, sums, sizeof whole);
    Floats scale;
    std::memcpy(&scale, scales, sizeof scale);
    x = __builtin_convertvector(whole, Floats) * scale;
}

PART_OF_ALL void storeBytes(Floats &x, std::int8_t *to)
{
    cut(-1, x, 1);
    const Floats rounded = x * 127 + rounding;
    Ints whole;
    reinterpret(rounded, whole);
    const Bytes bytes = __builtin_convertvector(whole - roundingBits, Bytes);
    std::memcpy(to, &bytes, sizeof bytes);
}

PART_OF_ALL void applyHere(Nonlinearity function, const std::int32_t *sums, const float *scales,
                           int count, std::int8_t *outputs)
{
    for (int i = 0; i < count; i += numbersAtOnce) {
        Floats x;
        Floats below;
        load(sums + i, scales + i, x);
        switch (function) {
        case Nonlinearity::Linear:
            break;
        case Nonlinearity::Tanh:
            toTanh(x, below);
            x /= below;
            break;
        case Nonlinearity::Logistic:
            toLogistic(x, below);
            x /= below;
            break;
        case Nonlinearity::Relu:
            cut(0, x, 1);
            break;
        }
        storeBytes(x, outputs + i);
    }
}

PART_OF_ALL void stepHere(const std::int32_t *sums, const float *scales, int count, float *states,
                          std::int8_t *outputs)
{
    const std::ptrdiff_t cells = count;
    for (int i = 0; i < count; i += numbersAtOnce) {
        Floats input;
        Floats admitted;
        Floats kept;
        Floats shown;
        Floats state;
        load(sums + i, scales + i, input);
        load(sums + cells + i, scales + cells + i, admitted);
        load(sums + 2 * cells + i, scales + 2 * cells + i, kept);
        load(sums + 3 * cells + i, scales + 3 * cells + i, shown);
        std::memcpy(&state, states + i, sizeof state);
        Floats belowInput;
        Floats belowAdmitted;
        Floats belowKept;
        Floats belowShown;
        Floats belowState;
        toTanh(input, belowInput);
        toLogistic(admitted, belowAdmitted);
        toLogistic(kept, belowKept);
        toLogistic(shown, belowShown);
        belowAdmitted *= belowInput;
        state = (state * kept * belowAdmitted + input * admitted * belowKept) /
                (belowKept * belowAdmitted);
        cut(-mostState, state, mostState);
        std::memcpy(states + i, &state, sizeof state);
        toTanh(state, belowState);
        state = state * shown / (belowState * belowShown);
        storeBytes(state, outputs + i);
    }
}

PART_OF_ALL void shareHere(const std::int32_t *sums, const float *scales, int count, float *shares)
{
    float largest = float(sums[0]) * scales[0];
    for (int i = 0; i < count; i += numbersAtOnce) {
        Floats x;
        load(sums + i, scales + i, x);
        std::memcpy(shares + i, &x, sizeof x);
    }
    for (int i = 0; i < count; ++i) {
        largest = shares[i] > largest ? shares[i] : largest;
    }
    for (int i = 0; i < count; i += numbersAtOnce) {
        Floats x;
        std::memcpy(&x, shares + i, sizeof x);
        x -= largest;
        toPowerOfE(x);
        std::memcpy(shares + i, &x, sizeof x);
    }
    float total = 0;
    for (int i = 0; i < count; ++i) {
        total += shares[i];
    }
    for (int i = 0; i < count; ++i) {
        shares[i] /= total;
    }
}

enum class Processor { Any, Avx2, Avx512 };

Processor processor()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw")) {
        return Processor::Avx512;
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) {
        return Processor::Avx2;
    }
#endif
    return Processor::Any;
}

#if defined(__x86_64__)
template <typename Work>
__attribute__((target("avx512f,avx512bw"))) void onAvx512(const Work &work)
{
    work();
}

template <typename Work>
__attribute__((target("avx2,fma"))) void onAvx2(const Work &work)
{
    work();
}
#endif

/// `work` has to be inline always, to become part of the function for this processor.
template <typename Work>
void onThisProcessor(const Work &work)
{
    static const Processor here = processor();
#if defined(__x86_64__)
    if (here == Processor::Avx512) {
        onAvx512(work);
        return;
    }
    if (here == Processor::Avx2) {
        onAvx2(work);
        return;
    }
#endif
    work();
}

} // namespace

void applyNonlinearity(Nonlinearity function, const std::int32_t *sums, const float *scales,
                       int count, std::int8_t *outputs)
{
    onThisProcessor([=]() __attribute__((always_inline)) {
        applyHere(function, sums, scales, count, outputs);
    });
}

void stepMemory(const std::int32_t *sums, const float *scales, int count, float *states,
                std::int8_t *outputs)
{
    onThisProcessor([=]() __attribute__((always_inline)) {
        stepHere(sums, scales, count, states, outputs);
    });
}

void shareOut(const std::int32_t *sums, const float *scales, int count, float *shares)
{
    onThisProcessor([=]()
                        __attribute__((always_inline)) { shareHere(sums, scales, count, shares); });
}

} // namespace recognition
