// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"
#include "Script.h"

namespace recognition {

/// The text of a line as it is written: no blanks between Chinese or Japanese characters, marks
/// of the width that the script uses, no stray direction marks.
QString repairedText(const Reading &reading, Script script);

} // namespace recognition
