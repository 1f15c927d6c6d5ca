// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

namespace recognition {

/// Whitens what on `flat`, a line that is dark on white, is no letter but an icon beside the text:
/// filled shapes thicker than any stroke, and shapes that stand out above and below the letters.
/// `height`: the typical height of the line's letters, in pixels.
///
/// A model makes letters of them, and often misreads the word beside them too. Lines that consist
/// of such shapes are left alone: they are heavy type.
void whitenIcons(GreyImage &flat, int height);

} // namespace recognition
