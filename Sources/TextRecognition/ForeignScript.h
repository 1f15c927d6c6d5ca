// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "LineTask.h"
#include "Workers.h"

#include <QStringList>

#include <vector>

namespace recognition {

/// The model among `candidates`, of other scripts than Latin, that reads best what the Latin model
/// of a page could not read of `tasks`; an empty string if none does.
QString foreignModel(std::vector<LineTask> &tasks, const QStringList &candidates,
                     EngineCache &engines, const Workers &workers);

} // namespace recognition
