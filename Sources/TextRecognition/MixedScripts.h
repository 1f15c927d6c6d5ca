// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "LineTask.h"
#include "Reading.h"
#include "Script.h"

namespace recognition {

/// The best of two readings of one line, word by word: `base`, by a model of the line's main
/// `script`, unless `other`, by a model of another one, is clearly surer.
Reading mergedReading(const Reading &base, const Reading &other, Script script);

/// What `task` is taken to say, with the words that `second`, a model of another script, reads more
/// surely. Only the part with words read less than `sure` is read again, and only if it looks as
/// though it might be of that script.
Reading mixedReading(LineTask &task, const QString &second, double sure, EngineCache &engines);

} // namespace recognition
