// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <vector>

namespace recognition {

/// Which of the models of scripts with Chinese characters, `candidates`, reads `tasks`, longest
/// first, best: kana make them Japanese, else the surest model wins.
QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &candidates,
                 EngineCache &engines, Workers &workers);

/// How much of a line is looked at to tell them apart, in letter heights.
inline constexpr int hanSampleLength = 15;

} // namespace recognition
