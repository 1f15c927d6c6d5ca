// SPDX-License-Identifier: MIT
#include "Soften.h"

#include <cstddef>

namespace recognition {

bool isBilevel(const GreyImage &flat)
{
    std::size_t grey = 0;
    std::size_t ink = 0;
    for (const std::uint8_t value : flat.pixels) {
        ink += value <= 30;
        grey += value > 30 && value < 225;
    }
    return 10 * grey <= ink;
}

GreyImage softened(const GreyImage &flat)
{
    // Of itself against a neighbour: 2 blurs thin strokes away, 6 is hardly seen.
    constexpr int weight = 4;
    constexpr int sum = (weight + 2) * (weight + 2);
    const auto at = [&flat](int x, int y) {
        return x < 0 || y < 0 || x >= flat.width || y >= flat.height ? 255 : int(flat.at(x, y));
    };
    GreyImage result = flat;
    for (int y = 0; y < flat.height; ++y) {
        for (int x = 0; x < flat.width; ++x) {
            const auto across = [&](int row) {
                return at(x - 1, row) + weight * at(x, row) + at(x + 1, row);
            };
            result.row(y)[x] =
                std::uint8_t((across(y - 1) + weight * across(y) + across(y + 1)) / sum);
        }
    }
    return result;
}

} // namespace recognition
