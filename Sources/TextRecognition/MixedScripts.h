// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"
#include "Script.h"

namespace recognition {

/// The best of two readings of one line, word by word: `base`, by a model of the line's main
/// `script`, unless `other`, by a model of another one, is clearly surer.
///
/// The words come in logical order: of an Arabic line from the right, with what runs from left
/// to right kept together.
Reading mergedReading(const Reading &base, const Reading &other, Script script);

} // namespace recognition
