// SPDX-License-Identifier: MIT
#pragma once

#include "GridCells.h"

#include <vector>

namespace recognition {

/// The number of the shape of each cell of each of `lines`, in the order of their columns: cells
/// that show the same character, to the pixel but for colours, have the same number.
std::vector<std::vector<std::size_t>> cellShapes(const Grid &grid,
                                                 const std::vector<GridLine> &lines);

} // namespace recognition
