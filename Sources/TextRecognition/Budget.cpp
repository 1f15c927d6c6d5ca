// SPDX-License-Identifier: MIT
#include "Budget.h"

namespace recognition {

namespace {

using namespace std::chrono_literals;

/// A 4K screen, of 8.3 megapixels, must not take more than eight seconds, the last of which is kept
/// for what follows the reading. A small picture full of text may take more for its size than a
/// screen: a full HD screen full of Chinese text, which takes longest to read, takes one and a half
/// seconds on a quiet processor, and must be read whole on one that is half as fast.
constexpr std::chrono::nanoseconds least = 3s;
constexpr std::chrono::nanoseconds perMegapixel = 500ms;

#ifdef VELLORA_SLOW_BUILD
/// Checking every access and counting every line makes reading so much slower, which must not cut
/// what is read.
constexpr int slowness = 20;
#else
constexpr int slowness = 1;
#endif

} // namespace

std::chrono::nanoseconds budgetFor(qint64 pixels)
{
    return slowness * (least + perMegapixel * pixels / 1'000'000);
}

} // namespace recognition
