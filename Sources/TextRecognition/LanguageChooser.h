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

/// The model of the language that `text`, of Latin script, is so much likelier in than in that of
/// `model` that it is taken for granted; empty if there is none.
QString surelyOther(const QString &text, const QString &model, const Languages &languages);

} // namespace recognition
