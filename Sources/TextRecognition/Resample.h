// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

namespace recognition {

/// The weight of a pixel whose middle is so many pixels away.
float catmullRom(float distance);

/// `image` at another size: Catmull-Rom when it grows, the same kernel widened to an area filter
/// when it shrinks, so that strokes neither blur nor break. Sizes below one pixel give one pixel.
GreyImage resampled(const GreyImage &image, int width, int height);

} // namespace recognition
