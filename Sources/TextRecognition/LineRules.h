// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

namespace recognition {

/// Removes lines under and through the text of `flat`, a line that is dark on white; the strokes
/// that cross them stay. `height`: the typical height of the line's letters, in pixels.
void removeRules(GreyImage &flat, int height);

} // namespace recognition
