// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

namespace recognition {

/// The typical height of the letters on `flat`, a line that is dark on white, in pixels with the
/// edges around them; 0 if there is no ink.
///
/// Marks may hold several letters of different heights, or letters and an icon, where their edges
/// meet; columns without ink part them.
int inkHeight(const GreyImage &flat);

} // namespace recognition
