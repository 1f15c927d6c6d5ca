// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <vector>

namespace recognition {

/// The model of the language of Latin script that `tasks`, longest first, are in.
QString latinModel(const std::vector<LineTask *> &tasks, const Languages &languages,
                   EngineCache &engines, Workers &workers);

} // namespace recognition
