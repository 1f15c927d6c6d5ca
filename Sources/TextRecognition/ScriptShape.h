// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Script.h"

#include <array>
#include <vector>

namespace recognition {

/// The kinds of writing that differ at first sight, without any letter being read.
enum class WritingKind { LatinOrCyrillic, Arabic, Chinese, Korean };

inline constexpr std::size_t writingKinds = 4;
inline constexpr std::size_t shapeFeatureCount = 32;

using ShapeFeatures = std::array<double, shapeFeatureCount>;
/// One probability per kind, in the order of `WritingKind`, that add up to 1.
using KindShares = std::array<double, writingKinds>;

/// The kind of the texts of `script`; Japanese counts as Chinese.
WritingKind kindOf(Script script);

/// What the strokes of a prepared line are like: how many lie above and beside each other, how the
/// ink is spread over the line's height, how wide its pieces are. All zero without ink.
/// `letters`: how many rows of it a letter takes.
ShapeFeatures shapeFeatures(const GreyImage &picture, int letters);

/// How likely a line with these features is of each kind.
KindShares kindShares(const ShapeFeatures &features);

} // namespace recognition
