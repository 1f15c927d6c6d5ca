// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Marks.h"
#include "PageReader.h"

#include <vector>

namespace recognition {

/// Whether the page is written in columns from top to bottom: its letters stand closer to those
/// below than to those beside.
bool isVertical(const std::vector<Mark> &marks);

/// Reads a page of vertical Japanese, columns from the right. Empty if the model for it is not
/// installed or not sure of what it reads.
std::vector<PageLine> readVertical(const GreyImage &page, const std::vector<Mark> &marks,
                                   EngineCache &engines);

} // namespace recognition
