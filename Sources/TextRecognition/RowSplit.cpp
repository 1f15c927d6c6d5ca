// SPDX-License-Identifier: MIT
#include "RowSplit.h"

#include <cstddef>

namespace recognition {

namespace {

/// Whether `line` is two rows, and where the lower one begins. Between rows there are only
/// descenders and ascenders; within one the strokes of letters go on.
bool rowBoundary(const TextLine &line, int &boundary)
{
    const Box &box = line.box;
    if (box.height() < 1.6 * line.letterHeight || line.marks.size() < 3) {
        return false;
    }
    const auto isTall = [&box](const Mark &mark) {
        return 5 * mark.box.height() > 3 * box.height();
    };
    int all = 0;
    int low = 0;
    for (const Mark &mark : line.marks) {
        all += mark.box.width();
        low += isTall(mark) ? 0 : mark.box.width();
    }
    std::vector<int> covered(std::size_t(box.height()), 0);
    for (const Mark &mark : line.marks) {
        // What is as high as both rows, such as a column of icons, tells nothing beside letters.
        if (3 * low > 2 * all && isTall(mark)) {
            continue;
        }
        for (std::size_t i = 0; i < mark.rows.size(); ++i) {
            covered[std::size_t(mark.box.top - box.top) + i] += mark.rows[i];
        }
    }
    const auto begin = covered.begin();
    const auto height = std::ptrdiff_t(covered.size());
    const auto lowest = std::min_element(begin + height * 3 / 10, begin + height * 7 / 10);
    const int above = *std::max_element(begin, lowest);
    const int below = *std::max_element(lowest, covered.end());
    boundary = box.top + int(lowest - begin);
    return 4 * *lowest <= std::min(above, below) &&
           4 * std::min(above, below) >= std::max(above, below);
}

/// The part of `mark` in the rows from `top` to `bottom`, just outside; of no height if it is not
/// there.
Mark partOf(const Mark &mark, int top, int bottom)
{
    Mark part = mark;
    part.box.top = std::clamp(top, mark.box.top, mark.box.bottom);
    part.box.bottom = std::clamp(bottom, part.box.top, mark.box.bottom);
    const auto first = mark.rows.begin() + (part.box.top - mark.box.top);
    part.rows.assign(first, first + part.box.height());
    return part;
}

} // namespace

void splitRows(std::vector<TextLine> &lines)
{
    for (std::size_t i = 0; i < lines.size(); ++i) {
        int boundary = 0;
        if (!rowBoundary(lines[i], boundary)) {
            continue;
        }
        std::vector<Mark> upper;
        std::vector<Mark> lower;
        for (const Mark &mark : lines[i].marks) {
            if (mark.box.height() > 1.45 * lines[i].letterHeight) {
                upper.push_back(partOf(mark, mark.box.top, boundary));
                lower.push_back(partOf(mark, boundary, mark.box.bottom));
            } else {
                (mark.box.centreY2() < 2 * boundary ? upper : lower).push_back(mark);
            }
        }
        const auto isNothing = [](const Mark &mark) {
            return mark.box.height() < 2;
        };
        std::erase_if(upper, isNothing);
        std::erase_if(lower, isNothing);
        if (upper.empty() || lower.empty()) {
            continue;
        }
        lines[i] = lineOf(std::move(upper));
        lines.push_back(lineOf(std::move(lower)));
        --i;
    }
}

} // namespace recognition
