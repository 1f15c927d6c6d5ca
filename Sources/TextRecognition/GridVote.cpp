// SPDX-License-Identifier: MIT
#include "GridVote.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

namespace recognition {

namespace {

/// Pixels of one character drawn in two colours differ by this much at most: anti-aliasing is
/// blended otherwise on dark than on light.
constexpr int mostOfPixel = 72;

/// So do all of them together, as a share of the ink: the dot within a nought is a tenth of it.
constexpr double mostOfInk = 0.06;

/// A cell as many pixels wide as every other one.
struct Shape
{
    std::vector<std::uint8_t> ink;
    int sum = 0;
};

Shape shapeOf(const Grid &grid, const GridLine &line, int column, int width)
{
    const int left = std::clamp(int(std::lround(grid.columnLeft(column))) - grid.box.left, 0,
                                std::max(0, line.picture.width - width));
    Shape shape;
    for (int y = 0; y < line.picture.height; ++y) {
        for (int x = left; x < std::min(left + width, line.picture.width); ++x) {
            const int ink = 255 - line.picture.at(x, y);
            shape.ink.push_back(std::uint8_t(ink));
            shape.sum += ink;
        }
    }
    return shape;
}

bool areSame(const Shape &a, const Shape &b)
{
    const double most = mostOfInk * std::max(a.sum, b.sum);
    if (a.ink.size() != b.ink.size() || std::abs(a.sum - b.sum) > most) {
        return false;
    }
    int sum = 0;
    int largest = 0;
    for (std::size_t i = 0; i < a.ink.size(); ++i) {
        const int off = std::abs(a.ink[i] - b.ink[i]);
        sum += off;
        largest = std::max(largest, off);
    }
    return sum <= most && largest <= mostOfPixel;
}

} // namespace

std::vector<std::vector<std::size_t>> cellShapes(const Grid &grid,
                                                 const std::vector<GridLine> &lines)
{
    const int width = int(std::floor(grid.cellWidth));
    // By their ink, so that only those alike are compared.
    std::multimap<int, std::size_t> bySum;
    std::vector<Shape> known;
    std::vector<std::vector<std::size_t>> numbers;
    for (const GridLine &line : lines) {
        std::vector<std::size_t> row;
        for (const int column : line.columns) {
            Shape shape = shapeOf(grid, line, column, width);
            const int range = int(mostOfInk * shape.sum / (1 - mostOfInk)) + 1;
            std::size_t number = known.size();
            for (auto at = bySum.lower_bound(shape.sum - range);
                 at != bySum.end() && at->first <= shape.sum + range; ++at) {
                if (areSame(known[at->second], shape)) {
                    number = at->second;
                    break;
                }
            }
            if (number == known.size()) {
                bySum.emplace(shape.sum, number);
                known.push_back(std::move(shape));
            }
            row.push_back(number);
        }
        numbers.push_back(std::move(row));
    }
    return numbers;
}

} // namespace recognition
