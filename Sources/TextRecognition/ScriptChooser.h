// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <vector>

namespace recognition {

/// How sure a model of `script`, not Latin, is of `reading`, less what few letters may be by
/// chance; 0 if it saw hardly any letters of its own, or only such Cyrillic ones as look like Latin
/// ones and make no long listed word.
double scriptScore(const Reading &reading, Script script);

/// The model of another script than Latin that reads a sample of `task` best, if it is surer than
/// `least`; else an empty string. `candidates`: at most one model per script.
QString otherScript(LineTask &task, const QStringList &candidates, double least,
                    EngineCache &engines);

/// The model that `tasks`, a page's lines, longest first, are read best with, among one model per
/// script.
QString mainModel(const std::vector<LineTask *> &tasks, const QStringList &candidates,
                  EngineCache &engines, Workers &workers);

/// How much of a line is looked at to tell the script, in letter heights.
inline constexpr int scriptSampleLength = 12;

/// A model that reads with this confidence reads its own script; foreign writing stays below.
inline constexpr double sureConfidence = 88;

} // namespace recognition
