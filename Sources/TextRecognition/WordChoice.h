// SPDX-License-Identifier: MIT
#pragma once

#include "Places.h"
#include "Script.h"

namespace recognition {

/// Whether the other reading of a place is right where the base reading, by the model of a line
/// mainly in `script`, is not.
bool takesOther(const Place &place, Script script);

/// Whether the other reading of a place without letters is right if it is right of the place
/// beside: numbers and brackets go with the foreign word that they stand beside.
bool takesBeside(const Place &place);

} // namespace recognition
