// SPDX-License-Identifier: MIT
#include "Edges.h"

#include <cstdlib>
#include <cstring>

namespace recognition {

namespace {

/// Longer straight edges are rules. The longest strokes of letters on a screen (the bars of a
/// heading, an em dash) stay below, but for display sizes.
constexpr int ruleLength = 44;

} // namespace

std::vector<std::uint8_t> straightRules(const GreyImage &image, int threshold)
{
    std::vector<std::uint8_t> rules(image.pixels.size(), 0);
    const int width = image.width;
    const int height = image.height;
    const auto differs = [threshold](int a, int b) {
        return std::abs(a - b) > threshold;
    };

    for (int y = 0; y + 1 < height; ++y) {
        const std::uint8_t *line = image.row(y);
        const std::uint8_t *next = image.row(y + 1);
        int start = -1;
        for (int x = 0; x <= width; ++x) {
            const bool edge = x < width && differs(line[x], next[x]) &&
                              (start < 0 || x == start || !differs(line[x], line[x - 1]) ||
                               !differs(next[x], next[x - 1]));
            if (edge) {
                if (start < 0)
                    start = x;
                continue;
            }
            if (start >= 0 && x - start > ruleLength) {
                std::memset(&rules[std::size_t(y) * width + start], 1, std::size_t(x - start));
                std::memset(&rules[std::size_t(y + 1) * width + start], 1, std::size_t(x - start));
            }
            start = -1;
        }
    }

    std::vector<int> starts(std::size_t(width), -1);
    for (int y = 0; y <= height; ++y) {
        for (int x = 0; x + 1 < width; ++x) {
            int &start = starts[std::size_t(x)];
            const std::uint8_t *line = y < height ? image.row(y) : nullptr;
            const std::uint8_t *previous = y > 0 ? image.row(y - 1) : nullptr;
            const bool edge = line && differs(line[x], line[x + 1]) &&
                              (start < 0 || !previous || !differs(line[x], previous[x]) ||
                               !differs(line[x + 1], previous[x + 1]));
            if (edge) {
                if (start < 0)
                    start = y;
                continue;
            }
            if (start >= 0 && y - start > ruleLength * 3 / 2) {
                for (int k = start; k < y; ++k) {
                    rules[std::size_t(k) * width + x] = 1;
                    rules[std::size_t(k) * width + x + 1] = 1;
                }
            }
            start = -1;
        }
    }
    return rules;
}

GreyImage edgeStrength(const GreyImage &image)
{
    GreyImage strength(image.width, image.height, 0);
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t *line = image.row(y);
        const std::uint8_t *next = y + 1 < image.height ? image.row(y + 1) : line;
        std::uint8_t *out = strength.row(y);
        std::uint8_t *below = y + 1 < image.height ? strength.row(y + 1) : out;
        for (int x = 0; x + 1 < image.width; ++x) {
            const auto d = std::uint8_t(std::abs(line[x] - line[x + 1]));
            out[x] = std::max(out[x], d);
            out[x + 1] = std::max(out[x + 1], d);
        }
        for (int x = 0; x < image.width; ++x) {
            const auto d = std::uint8_t(std::abs(line[x] - next[x]));
            out[x] = std::max(out[x], d);
            below[x] = std::max(below[x], d);
        }
    }
    return strength;
}

std::vector<Run> edgeRuns(const GreyImage &strength, int threshold)
{
    std::vector<Run> runs;
    for (int y = 0; y < strength.height; ++y) {
        const std::uint8_t *line = strength.row(y);
        for (int x = 0; x < strength.width;) {
            while (x < strength.width && line[x] <= threshold)
                ++x;
            const int start = x;
            while (x < strength.width && line[x] > threshold)
                ++x;
            if (x > start)
                runs.push_back({y, start, x});
        }
    }
    return runs;
}

} // namespace recognition
