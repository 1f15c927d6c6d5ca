// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <optional>

namespace recognition {

/// The part of `page` in `box`, within it, dark on white, if all that stands there is drawn without
/// anti-aliasing on one background: each colour of ink is black then, but for what is hardly seen
/// beside the others.
std::optional<GreyImage> aliasedInk(const GreyImage &page, const Box &box);

/// Whether a line, dark on white, is drawn without anti-aliasing: it has hardly any greys.
bool isBilevel(const GreyImage &flat);

/// The same with the steps of its strokes a little blurred. Scaled up as they are, they are shapes
/// that the models have not seen.
GreyImage softened(const GreyImage &flat);

} // namespace recognition
