// SPDX-License-Identifier: MIT
#pragma once

#include "Marks.h"

#include <vector>

namespace recognition {

/// A piece of one line of text: marks side by side without a gap as wide as a column's.
struct TextLine
{
    Box box;
    /// From the left.
    std::vector<Mark> marks;
    /// The typical height of its letters, in pixels, with the edges around them.
    int letterHeight = 0;
    /// Columns from top to bottom instead of one line.
    bool isVertical = false;
};

/// The line that `marks`, at least one, are.
TextLine lineOf(std::vector<Mark> marks);

/// Groups marks into lines by their neighbours, so that sizes may differ all over the picture and
/// lines may lean. Dots, accents and punctuation join the line next to them; what stays alone and
/// is smaller than any letter is dropped. In no particular order.
std::vector<TextLine> findLines(const std::vector<Mark> &marks);

} // namespace recognition
