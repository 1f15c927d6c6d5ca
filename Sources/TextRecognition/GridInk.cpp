// SPDX-License-Identifier: MIT
#include "GridInk.h"

#include <array>
#include <cstdlib>

namespace recognition {

namespace {

/// Pixels darker than this share of the darkest count whole: strokes of a pixel or less, as thin
/// type has, are ink as much as others.
constexpr int fullInk = 96;

} // namespace

std::uint8_t commonestGrey(const GreyImage &page, const Box &box)
{
    std::array<int, 256> counts{};
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            ++counts[page.at(x, y)];
        }
    }
    std::size_t best = 0;
    int most = -1;
    for (std::size_t grey = 0; grey < counts.size(); ++grey) {
        const int around = 2 * counts[grey] + (grey > 0 ? counts[grey - 1] : 0) +
                           (grey + 1 < counts.size() ? counts[grey + 1] : 0);
        if (around > most) {
            most = around;
            best = grey;
        }
    }
    return std::uint8_t(best);
}

GreyImage inkOf(const GreyImage &page, const Box &box, int tileWidth, int tileHeight)
{
    GreyImage ink(box.width(), box.height(), 0);
    for (int top = box.top; top < box.bottom; top += tileHeight) {
        for (int left = box.left; left < box.right; left += tileWidth) {
            const Box tile{left, top, std::min(left + tileWidth, box.right),
                           std::min(top + tileHeight, box.bottom)};
            const int background = commonestGrey(page, tile);
            for (int y = tile.top; y < tile.bottom; ++y) {
                for (int x = tile.left; x < tile.right; ++x) {
                    const int off = std::abs(page.at(x, y) - background);
                    ink.row(y - box.top)[x - box.left] = std::uint8_t(off < leastInk ? 0 : off);
                }
            }
        }
    }
    return ink;
}

std::vector<float> columnProfile(const GreyImage &ink)
{
    std::vector<float> profile(std::size_t(ink.width), 0);
    for (int y = 0; y < ink.height; ++y) {
        for (int x = 0; x < ink.width; ++x) {
            profile[std::size_t(x)] += float(std::min<int>(ink.at(x, y), fullInk));
        }
    }
    return profile;
}

std::vector<float> rowProfile(const GreyImage &ink)
{
    std::vector<float> profile(std::size_t(ink.height), 0);
    for (int y = 0; y < ink.height; ++y) {
        for (int x = 0; x < ink.width; ++x) {
            profile[std::size_t(y)] += float(std::min<int>(ink.at(x, y), fullInk));
        }
    }
    return profile;
}

} // namespace recognition
