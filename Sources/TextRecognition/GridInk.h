// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <vector>

namespace recognition {

/// How far each pixel of `page` in `box` is from its background, which is the commonest grey of the
/// tile around it, `tileWidth` by `tileHeight` pixels.
GreyImage inkOf(const GreyImage &page, const Box &box, int tileWidth, int tileHeight);

/// The commonest grey of `page` in `box`, greys a few levels apart counted as one.
std::uint8_t commonestGrey(const GreyImage &page, const Box &box);

/// The ink in each column, or each row, of `ink`.
std::vector<float> columnProfile(const GreyImage &ink);
std::vector<float> rowProfile(const GreyImage &ink);

/// Fainter differences from the background are no ink, in grey levels: as where marks are found.
inline constexpr int leastInk = 12;

} // namespace recognition
