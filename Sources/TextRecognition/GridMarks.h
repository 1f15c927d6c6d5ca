// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <optional>

namespace recognition {

/// The mark in `cell` of `picture`, a row dark on white, if it is one that models of Latin letters
/// do not know and its looks alone tell: `^` and a back-tick, which stand in the upper half.
std::optional<char16_t> markInCell(const GreyImage &picture, const Box &cell);

} // namespace recognition
