// SPDX-License-Identifier: MIT
#pragma once

#include "Comb.h"
#include "Grids.h"

#include <optional>
#include <vector>

namespace recognition {

/// The widest rows of a block, in cell widths: editors set them as wide as three.
inline constexpr double mostRow = 3.4;

/// The highest stretch of nothing within a block, in cell widths: three rows.
inline constexpr double mostBlank = 3 * mostRow;

/// The most ink at the boundaries of a line's cells, compared with anywhere.
inline constexpr double mostInkOfLine = 0.5;

/// The rows and columns of the block that `lines`, whose cells are those of `comb`, stand in, with
/// what else stands in its cells; nothing if there are no rows.
std::optional<Grid> gridOf(const GreyImage &page, const Comb &comb,
                           const std::vector<const TextLine *> &lines);

} // namespace recognition
