// SPDX-License-Identifier: MIT
#pragma once

#include "Grids.h"

namespace recognition {

/// A row of a grid, ready to be read.
struct GridLine
{
    /// Its cells side by side from column nought, dark on white, full contrast, as many pixels as
    /// on the page.
    GreyImage picture;
    /// Columns with ink.
    std::vector<int> columns;
};

/// The rows of `grid`. Every cell has its own background, as in a selection or a status line, and
/// its own ink, as in sixteen colours.
std::vector<GridLine> gridLines(const GreyImage &page, const Grid &grid);

/// Where the ink of most rows begins and ends within them, in pixels.
GridRow inkRows(const std::vector<GridLine> &lines);

} // namespace recognition
