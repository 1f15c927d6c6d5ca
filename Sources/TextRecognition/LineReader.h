// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <vector>

namespace recognition {

/// Finds out what each line is written in and reads it: fills `best` and `script`.
///
/// The longest line decides what the others are tried with first; a line that this model does not
/// read well is tried with the other scripts and languages, and word by word where they mix.
/// `tasks` stand longest first. When the budget of the thread's effort is spent, the rest stays as
/// it was read by then, or unread.
void readLines(std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
               Workers &workers);

} // namespace recognition
