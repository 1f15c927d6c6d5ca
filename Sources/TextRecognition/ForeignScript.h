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

/// By how much the doubtful parts of the Latin lines among `tasks` are likelier simplified Chinese
/// than traditional.
double simplifiedLeadOfParts(std::vector<LineTask> &tasks, const QString &simplified,
                             const QString &traditional, EngineCache &engines);

} // namespace recognition
