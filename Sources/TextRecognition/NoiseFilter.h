// SPDX-License-Identifier: MIT
#pragma once

#include "LineTask.h"

#include <vector>

namespace recognition {

/// Removes the lines that are no text: icons, textures, borders that a model made letters of.
void dropNoise(std::vector<LineTask> &tasks);

/// Removes the lines that the upper or lower edge of the page, which is `pageHeight` high, cuts by
/// more than a third of their height: what is left of their letters reads as others.
void dropCutLines(std::vector<LineTask> &tasks, int pageHeight);

/// Removes what was read in the scenery around outlined text, `rows`, unless it is long and sure:
/// a photograph has shapes like letters all over.
void dropScenery(std::vector<LineTask> &tasks, const std::vector<Box> &rows);

} // namespace recognition
