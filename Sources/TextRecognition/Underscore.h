// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

#include <QString>

namespace recognition {

/// What stands in a gap between two letters that was read as a blank.
struct Gap
{
    /// One or more underscores; empty if there are none.
    QString underscores;
    /// Whether there is room for a blank as well, on either side.
    bool blankBefore = true;
    bool blankAfter = true;
};

/// Looks for underscores in `place`, from one letter of a prepared line to the next: strokes low in
/// the line that touch neither, as the feet of letters and the lines under words do.
Gap gapAt(const GreyImage &line, const Box &place);

} // namespace recognition
