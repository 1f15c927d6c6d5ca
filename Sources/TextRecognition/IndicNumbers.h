// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "LineTask.h"
#include "Reading.h"

namespace recognition {

/// What `task` is taken to say, with the numbers in Arabic-Indic digits that stand in it, which the
/// Arabic model hardly knows. What stands beside them is read by `arabic`, that model, without
/// them where they disturbed it. Unchanged without such numbers; else its model is `arabic`.
///
/// `isExpected`: whether there are such numbers elsewhere on the page, so that one is believed that
/// could be other writing too.
Reading withIndicNumbers(LineTask &task, const QString &arabic, bool isExpected,
                         EngineCache &engines);

/// Whether a number in Arabic-Indic digits that can hardly be other writing stands in an Arabic
/// line.
bool hasIndicNumber(const LineTask &task);

} // namespace recognition
