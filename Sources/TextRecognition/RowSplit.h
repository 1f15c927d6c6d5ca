// SPDX-License-Identifier: MIT
#pragma once

#include "Lines.h"

namespace recognition {

/// Takes lines apart that are two rows or more, tied together by descenders, ascenders or an icon
/// beside them: at the pixel row in their middle that the fewest pixels stand in.
void splitRows(std::vector<TextLine> &lines);

} // namespace recognition
