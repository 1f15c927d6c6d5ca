// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <cstddef>
#include <vector>

namespace recognition {

/// What the order needs to know of a piece of a line.
struct Piece
{
    Box box;
    /// The typical height of its letters, in pixels.
    int letterHeight = 0;
    bool rightToLeft = false;
};

/// Pieces that stand side by side and are read as one line, in their order.
using Row = std::vector<std::size_t>;

/// The order in which the pieces of a page are read, as indices into `pieces`.
///
/// Rows from the top; the cells of a table or a form stay in their row, but columns of prose,
/// and panes side by side whose lines do not match, are read one after the other. Where most
/// text runs right to left, so do cells and columns.
std::vector<Row> readingOrder(const std::vector<Piece> &pieces);

} // namespace recognition
