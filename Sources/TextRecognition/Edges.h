// SPDX-License-Identifier: MIT
#pragma once

#include "Components.h"
#include "GreyImage.h"

namespace recognition {

/// How much each pixel differs from its four neighbours at most.
///
/// Text shows itself by its edges on any background and in either polarity, so that lines are
/// found without knowing what is ink.
GreyImage edgeStrength(const GreyImage &image);

/// The runs of pixels of `strength` above `threshold`.
std::vector<Run> edgeRuns(const GreyImage &strength, int threshold);

/// One flag per pixel: part of a straight rule, that is of a horizontal or vertical edge that goes
/// on for long and changes across but not along (borders, underlines, separators, the outlines of
/// selections). Vertical ones may be short if they join the ends of two horizontal ones: the sides
/// of a box.
std::vector<std::uint8_t> straightRules(const GreyImage &image, int threshold);

} // namespace recognition
