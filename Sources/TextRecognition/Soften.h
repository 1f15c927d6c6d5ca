// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

namespace recognition {

/// Whether a line, dark on white, is drawn without anti-aliasing: it has hardly any greys.
bool isBilevel(const GreyImage &flat);

/// The same with the steps of its strokes a little blurred. Scaled up as they are, they are shapes
/// that the models have not seen.
GreyImage softened(const GreyImage &flat);

} // namespace recognition
