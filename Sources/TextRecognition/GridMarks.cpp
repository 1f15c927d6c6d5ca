// SPDX-License-Identifier: MIT
#include "GridMarks.h"

#include <vector>

namespace recognition {

namespace {

/// Darker pixels of a row are strokes.
constexpr int stroke = 150;

/// Below a mark nothing is darker than this: thin letters are pale in part.
constexpr int pale = 215;

/// The share of its cell's width that a circumflex has at least, and a back-tick at most.
constexpr double leastCircumflex = 0.4;
constexpr double mostBackTick = 0.5;

/// The share of a row's height that both end above.
constexpr double upperPart = 0.6;

/// How high both are at most, as a share of their cell's width: they are less than half an em high,
/// and a cell is six tenths of an em wide. The lowest letters are nearly as high as a cell is wide,
/// and in rows far apart they too end in the upper part.
constexpr double tallestMark = 0.75;

/// The ink of one row of pixels.
struct Run
{
    int left = 0;
    int right = 0;
    int ink = 0;
    int width() const { return right - left; }
    int centre2() const { return left + right; }
    bool hasGap() const { return ink < width(); }
};

/// The rows of pixels with ink, which hang together; empty if there are several patches.
std::vector<Run> runsOf(const GreyImage &picture, const Box &cell, int &bottom)
{
    std::vector<Run> runs;
    bottom = cell.top;
    for (int y = cell.top; y < cell.bottom; ++y) {
        Run run{cell.right, cell.left, 0};
        for (int x = cell.left; x < cell.right; ++x) {
            if (picture.at(x, y) < stroke) {
                run.left = std::min(run.left, x);
                run.right = std::max(run.right, x + 1);
                ++run.ink;
            }
        }
        if (run.ink == 0) {
            continue;
        }
        if (!runs.empty() && bottom != y) {
            return {};
        }
        runs.push_back(run);
        bottom = y + 1;
    }
    return runs;
}

bool isBlankBelow(const GreyImage &picture, const Box &cell, int top)
{
    for (int y = top; y < cell.bottom; ++y) {
        for (int x = cell.left; x < cell.right; ++x) {
            if (picture.at(x, y) < pale) {
                return false;
            }
        }
    }
    return true;
}

/// Two strokes that part downwards.
bool isCircumflex(const std::vector<Run> &runs, int cellWidth)
{
    for (std::size_t i = 1; i < runs.size(); ++i) {
        if (runs[i].left > runs[i - 1].left || runs[i].right < runs[i - 1].right) {
            return false;
        }
    }
    return runs.back().width() >= leastCircumflex * cellWidth && runs.back().hasGap() &&
           !runs.front().hasGap() && runs.back().width() >= 2 * runs.front().width();
}

/// One short stroke that leans to the left.
bool isBackTick(const std::vector<Run> &runs, int cellWidth)
{
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (runs[i].hasGap() || runs[i].width() > mostBackTick * cellWidth ||
            (i > 0 && runs[i].centre2() < runs[i - 1].centre2())) {
            return false;
        }
    }
    return runs.back().centre2() - runs.front().centre2() >= 2 &&
           runs.back().left > runs.front().left;
}

} // namespace

std::optional<char16_t> markInCell(const GreyImage &picture, const Box &cell)
{
    int bottom = cell.top;
    const std::vector<Run> runs = runsOf(picture, cell, bottom);
    // One row of pixels more may be the mark's own edge.
    if (runs.size() < 2 || double(runs.size()) > tallestMark * cell.width() ||
        bottom - cell.top > upperPart * cell.height() || !isBlankBelow(picture, cell, bottom + 1)) {
        return {};
    }
    if (isCircumflex(runs, cell.width())) {
        return u'^';
    }
    return isBackTick(runs, cell.width()) ? std::optional(u'`') : std::nullopt;
}

} // namespace recognition
