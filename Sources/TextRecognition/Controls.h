// SPDX-License-Identifier: MIT
#pragma once

#include "Components.h"
#include "GreyImage.h"

namespace recognition {

/// Whether a component is an outline with nothing of its own inside: a button, a text field, a
/// card, a check box, a switch. Letters that are outlines too (O, 0, 口) are about as wide as
/// high and stand among others, so square outlines count only from a size on.
bool isOutline(const Component &component);

/// Whether a component is a switch: a track with round ends and a knob, all in one.
/// Words of a few letters that touch may have straight tops and bottoms too, but have no room for
/// a knob. `strength`: how much each pixel of the page differs from its neighbours.
bool isSwitch(const Component &component, const GreyImage &strength);

/// Whether a component is the edge of a plain disc or square, as a picture of somebody in a chat is
/// drawn, with letters in it or not. `page`: the grey page, on which it is filled.
bool isSolid(const Component &component, const GreyImage &page);

} // namespace recognition
