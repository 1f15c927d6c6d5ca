// SPDX-License-Identifier: MIT
#pragma once

#include "LineTask.h"

#include <vector>

namespace recognition {

/// Removes the lines that are no text: icons, textures, borders that a model made letters of.
void dropNoise(std::vector<LineTask> &tasks);

/// Removes what was read in the scenery around outlined text, `rows`, unless it is long and sure:
/// a photograph has shapes like letters all over.
void dropScenery(std::vector<LineTask> &tasks, const std::vector<Box> &rows);

} // namespace recognition
