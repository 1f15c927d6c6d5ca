// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Lines.h"

#include <vector>

namespace recognition {

/// A row of a grid: the pixels of the page from `top` to `bottom`, just outside.
struct GridRow
{
    int top = 0;
    int bottom = 0;
};

/// A block of type of fixed pitch, such as a terminal, an editor or a log: every character stands
/// in a cell of its own.
struct Grid
{
    /// In pixels of the page; its left edge is that of the leftmost character.
    Box box;
    /// Where column nought begins, and how wide each is, in pixels of the page.
    double left = 0;
    double cellWidth = 0;
    int columns = 0;
    /// Fainter differences from the background, in grey levels, are no ink.
    int leastInk = 0;
    /// Those with ink, from the top.
    std::vector<GridRow> rows;

    double columnLeft(int column) const { return left + column * cellWidth; }
};

/// How far left and right of its lines more of a block is looked for, in cells.
inline constexpr int mostBlankColumns = 12;

/// The share of a cell's width at either side where letters of its neighbours may reach into it.
inline constexpr double blankSide = 0.17;

/// The blocks of fixed pitch on `page`, told by the ink of `lines`: hardly any stands where one
/// cell ends and the next begins.
std::vector<Grid> findGrids(const GreyImage &page, const std::vector<const TextLine *> &lines);

} // namespace recognition
