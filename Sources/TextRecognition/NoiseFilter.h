// SPDX-License-Identifier: MIT
#pragma once

#include "LineTask.h"

#include <vector>

namespace recognition {

/// Removes the lines that are no text: icons, textures, borders that a model made letters of.
void dropNoise(std::vector<LineTask> &tasks);

} // namespace recognition
