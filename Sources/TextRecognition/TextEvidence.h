// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"

namespace recognition {

/// Whether a reading is of text for sure: the dots and strokes of a texture are read as the same
/// few letters, or unsurely.
bool isSurelyText(const Reading &reading);

} // namespace recognition
