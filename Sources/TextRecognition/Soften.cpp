// SPDX-License-Identifier: MIT
#include "Soften.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

namespace recognition {

std::optional<GreyImage> aliasedInk(const GreyImage &page, const Box &box)
{
    // Source code has a handful of colours; letters with smooth edges have dozens of greys.
    constexpr int mostGreys = 6;
    // In per cent: of the box, and of what stands out most.
    constexpr int leastBackground = 60;
    constexpr int faintest = 30;
    std::array<int, 256> counts{};
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            ++counts[page.at(x, y)];
        }
    }
    const auto isThere = [](int count) {
        return count > 0;
    };
    const auto background = std::max_element(counts.begin(), counts.end());
    if (std::count_if(counts.begin(), counts.end(), isThere) > mostGreys ||
        100 * *background < leastBackground * box.width() * box.height()) {
        return {};
    }
    const int paper = int(background - counts.begin());
    int strongest = 0;
    for (int grey = 0; grey < int(counts.size()); ++grey) {
        strongest = std::max(strongest, counts[std::size_t(grey)] > 0 ? std::abs(grey - paper) : 0);
    }
    GreyImage ink(box.width(), box.height(), 255);
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            if (100 * std::abs(page.at(x, y) - paper) >= faintest * std::max(1, strongest)) {
                ink.row(y - box.top)[x - box.left] = 0;
            }
        }
    }
    return ink;
}

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
