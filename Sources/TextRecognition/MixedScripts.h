// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"

namespace recognition {

/// The best of two readings of one line, word by word: where the line is in the one's script its
/// words are taken, elsewhere the other's. `base` wins when they are about as sure.
///
/// The words come in logical order: if most letters are Arabic from the right, with what runs
/// from left to right kept together.
Reading mergedReading(const Reading &base, const Reading &other);

} // namespace recognition
