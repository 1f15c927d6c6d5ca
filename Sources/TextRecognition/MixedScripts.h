// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "LineTask.h"
#include "Reading.h"
#include "Script.h"

namespace recognition {

/// The best of two readings of one line, word by word: `base`, by a model of the line's main
/// `script`, unless `other`, by a model of another one, is clearly surer.
///
/// The words come in logical order: of an Arabic line from the right, with what runs from left
/// to right kept together.
Reading mergedReading(const Reading &base, const Reading &other, Script script);

/// What `task` is taken to say, with the words that `second`, a model of another script, reads more
/// surely. Only the part with words read less than `sure` is read again, and only if it looks as
/// though it might be of that script.
Reading mixedReading(LineTask &task, const QString &second, double sure, EngineCache &engines);

/// Brings words from places on a line to the order they are read in, of a line from the right if
/// `fromRight`; what runs the other way is kept together.
void sortLogically(QList<ReadWord> &words, bool fromRight);

/// Whether a line that is mainly of `script` runs from right to left.
bool runsFromRight(const QString &text, Script script);

} // namespace recognition
