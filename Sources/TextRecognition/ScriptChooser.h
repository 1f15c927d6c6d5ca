// SPDX-License-Identifier: MIT
#pragma once

#include "EnginePool.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <vector>

namespace recognition {

/// The model of another script than Latin that reads a sample of `task` best, if it is surer than
/// `least`; else an empty string. `candidates`: at most one model per script.
QString otherScript(LineTask &task, const QStringList &candidates, double least, EnginePool &pool);

/// The model that `tasks`, a page's lines, longest first, are read best with, among one model per
/// script.
QString mainModel(const std::vector<LineTask *> &tasks, const QStringList &candidates,
                  EnginePool &pool, Workers &workers);

/// Which of the models of scripts with Chinese characters, `models`, reads `tasks`, longest first,
/// best: kana make them Japanese, else the surest model wins.
QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &models, EnginePool &pool,
                 Workers &workers);

/// The model of the language of Latin script that `tasks`, longest first, are in.
QString latinModel(const std::vector<LineTask *> &tasks, const Languages &languages,
                   EnginePool &pool, Workers &workers);

/// A model that reads with this confidence reads its own script; foreign writing stays below.
inline constexpr double sureConfidence = 88;

} // namespace recognition
