// SPDX-License-Identifier: MIT
#include "OutlinedLetters.h"

#include "Effort.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace recognition {

namespace {

/// The darkest fill of a letter, and how much darker its outline has to be.
constexpr int darkestFill = 150;
constexpr int leastStep = 80;

/// How high dots and accents are at least, and letters at most, in pixels.
constexpr int smallestDot = 2;
constexpr int tallest = 120;

/// The share of its outline that makes a shape a letter, and that is enough beside others.
constexpr double sureOutline = 0.85;
constexpr double leastOutline = 0.5;

std::vector<Run> brightRuns(const GreyImage &page)
{
    std::vector<Run> runs;
    for (int y = 0; y < page.height; ++y) {
        checkAt(y);
        const std::uint8_t *line = page.row(y);
        for (int x = 0; x < page.width;) {
            while (x < page.width && line[x] < darkestFill) {
                ++x;
            }
            const int start = x;
            while (x < page.width && line[x] >= darkestFill) {
                ++x;
            }
            if (x > start) {
                runs.push_back({y, start, x});
            }
        }
    }
    return runs;
}

/// Whether a shape is made of strokes: filled boxes and icons are not.
bool hasStrokes(const Component &shape)
{
    const Box &box = shape.box;
    return 10 * box.width() <= 4 * box.height() ||
           10 * shape.pixels <= 7 * box.width() * box.height();
}

int darkestNear(const GreyImage &page, int x, int y)
{
    int darkest = 255;
    for (int nearY = std::max(0, y - 1); nearY <= std::min(page.height - 1, y + 1); ++nearY) {
        for (int nearX = std::max(0, x - 1); nearX <= std::min(page.width - 1, x + 1); ++nearX) {
            darkest = std::min(darkest, int(page.at(nearX, nearY)));
        }
    }
    return darkest;
}

/// The greys around a shape: of each pixel `outlineAt` away and those beside it the darkest, since
/// an outline may be one pixel wide.
std::vector<int> surroundings(const GreyImage &page, const Component &shape)
{
    const int margin = outlineAt + 1;
    const Box &box = shape.box;
    GreyImage mask(box.width() + 2 * margin, box.height() + 2 * margin, 0);
    for (const Run &run : shape.runs) {
        for (int y = run.y - outlineAt; y <= run.y + outlineAt; ++y) {
            const bool onEdge = std::abs(y - run.y) == outlineAt;
            std::uint8_t *row = mask.row(y - box.top + margin) - box.left + margin;
            for (int x = run.left - outlineAt; x < run.right + outlineAt; ++x) {
                const bool beside = x < run.left - outlineAt + 1 || x >= run.right + outlineAt - 1;
                row[x] = std::max(row[x], std::uint8_t(onEdge || beside ? 1 : 2));
            }
        }
    }
    std::vector<int> greys;
    for (int y = 0; y < mask.height; ++y) {
        const int pageY = y + box.top - margin;
        for (int x = 0; x < mask.width; ++x) {
            const int pageX = x + box.left - margin;
            if (mask.at(x, y) == 1 && pageX >= 0 && pageY >= 0 && pageX < page.width &&
                pageY < page.height) {
                greys.push_back(darkestNear(page, pageX, pageY));
            }
        }
    }
    return greys;
}

} // namespace

int middleOf(std::vector<int> values)
{
    const auto at = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

std::vector<OutlinedLetter> outlinedLetters(const GreyImage &page)
{
    std::vector<OutlinedLetter> letters;
    for (Component &shape : connectedComponents(brightRuns(page))) {
        checkpoint();
        const Box &box = shape.box;
        if (box.height() < smallestDot || box.height() > tallest ||
            box.width() > 15 * box.height() + tallest) {
            continue;
        }
        std::vector<int> around = surroundings(page, shape);
        if (around.empty()) {
            continue;
        }
        const auto dark = std::count_if(around.begin(), around.end(),
                                        [](int grey) { return grey <= darkestFill - leastStep; });
        const double share = double(dark) / double(around.size());
        if (share < leastOutline && box.height() < smallestOutlined) {
            continue;
        }
        std::vector<int> fills;
        for (const Run &run : shape.runs) {
            fills.push_back(page.at((run.left + run.right) / 2, run.y));
        }
        const bool isLetter = box.height() < smallestOutlined || hasStrokes(shape);
        letters.push_back({std::move(shape), middleOf(std::move(around)),
                           middleOf(std::move(fills)), isLetter && share >= sureOutline,
                           !isLetter || share < leastOutline});
    }
    return letters;
}

} // namespace recognition
