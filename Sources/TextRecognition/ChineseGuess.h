// SPDX-License-Identifier: MIT
#pragma once

#include "Script.h"

#include <QString>

namespace recognition {

/// How common the pairs of characters in `text` are in Chinese of one form, which has its own words
/// as well as its own characters: bits over once in 2^15, added up.
/// `form`: `Script::SimplifiedHan` or `Script::TraditionalHan`.
int familiarity(const QString &text, Script form);

} // namespace recognition
