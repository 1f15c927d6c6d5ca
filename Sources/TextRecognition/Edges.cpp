// SPDX-License-Identifier: MIT
#include "Edges.h"

#include "Effort.h"

#include <cstdlib>
#include <cstring>

namespace recognition {

namespace {

/// Longer straight edges are rules. The longest strokes of letters on a screen (the bars of a
/// heading, an em dash) stay below, but for display sizes.
constexpr int ruleLength = 44;

/// The shortest side of a box that is looked for.
constexpr int shortestSide = 10;

/// How far a side ends from the corner of its box: the radius of a round one.
constexpr int corner = 7;

/// A vertical edge between the columns `x` and `x + 1`; `bottom` is just outside.
struct VerticalEdge
{
    int x = 0;
    int top = 0;
    int bottom = 0;
};

/// On which side of column `x` a horizontal rule begins or ends within a corner's reach of row
/// `y`, going up if `step` is negative: 1 to the right, -1 to the left, 0 if none does.
int cornerSide(const std::vector<std::uint8_t> &rules, const GreyImage &image, int x, int y,
               int step)
{
    const auto count = [&](int row, int from, int to) {
        int sum = 0;
        for (int k = std::max(0, from); k < std::min(image.width, to); ++k) {
            sum += rules[std::size_t(row) * image.width + k];
        }
        return sum;
    };
    for (int i = -1; i <= corner; ++i) {
        const int row = y + i * step;
        if (row < 0 || row >= image.height) {
            continue;
        }
        const int left = count(row, x - 2 * corner, x - 1);
        const int right = count(row, x + 3, x + 2 * corner + 2);
        if (right >= corner && left == 0) {
            return 1;
        }
        if (left >= corner && right == 0) {
            return -1;
        }
    }
    return 0;
}

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
        checkAt(y);
        const std::uint8_t *line = image.row(y);
        const std::uint8_t *next = image.row(y + 1);
        int start = -1;
        for (int x = 0; x <= width; ++x) {
            const bool edge = x < width && differs(line[x], next[x]) &&
                              (start < 0 || x == start || !differs(line[x], line[x - 1]) ||
                               !differs(next[x], next[x - 1]));
            if (edge) {
                if (start < 0) {
                    start = x;
                }
                continue;
            }
            if (start >= 0 && x - start > ruleLength) {
                std::memset(&rules[std::size_t(y) * width + start], 1, std::size_t(x - start));
                std::memset(&rules[std::size_t(y + 1) * width + start], 1, std::size_t(x - start));
            }
            start = -1;
        }
    }

    std::vector<VerticalEdge> sides;
    std::vector<int> starts(std::size_t(width), -1);
    for (int y = 0; y <= height; ++y) {
        checkAt(y);
        for (int x = 0; x + 1 < width; ++x) {
            int &start = starts[std::size_t(x)];
            const std::uint8_t *line = y < height ? image.row(y) : nullptr;
            const std::uint8_t *previous = y > 0 ? image.row(y - 1) : nullptr;
            const bool edge = line && differs(line[x], line[x + 1]) &&
                              (start < 0 || !previous || !differs(line[x], previous[x]) ||
                               !differs(line[x + 1], previous[x + 1]));
            if (edge) {
                if (start < 0) {
                    start = y;
                }
                continue;
            }
            const int length = start < 0 ? 0 : y - start;
            if (length > ruleLength * 3 / 2) {
                sides.push_back({x, start, y});
            } else if (length >= shortestSide) {
                const int side = cornerSide(rules, image, x, start, -1);
                if (side != 0 && side == cornerSide(rules, image, x, y - 1, 1)) {
                    sides.push_back({x, start, y});
                }
            }
            start = -1;
        }
    }
    for (const VerticalEdge &side : sides) {
        for (int y = side.top; y < side.bottom; ++y) {
            rules[std::size_t(y) * width + side.x] = 1;
            rules[std::size_t(y) * width + side.x + 1] = 1;
        }
    }
    return rules;
}

GreyImage edgeStrength(const GreyImage &image)
{
    GreyImage strength(image.width, image.height, 0);
    for (int y = 0; y < image.height; ++y) {
        checkAt(y);
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
        checkAt(y);
        const std::uint8_t *line = strength.row(y);
        for (int x = 0; x < strength.width;) {
            while (x < strength.width && line[x] <= threshold) {
                ++x;
            }
            const int start = x;
            while (x < strength.width && line[x] > threshold) {
                ++x;
            }
            if (x > start) {
                runs.push_back({y, start, x});
            }
        }
    }
    return runs;
}

} // namespace recognition
