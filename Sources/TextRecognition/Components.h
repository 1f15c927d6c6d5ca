// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <vector>

namespace recognition {

/// A horizontal run of pixels; `right` is just outside.
struct Run
{
    int y = 0;
    int left = 0;
    int right = 0;
};

/// Pixels that touch one another, diagonals included.
struct Component
{
    Box box;
    int pixels = 0;
    /// By rows from the top, each row from the left.
    std::vector<Run> runs;
};

/// Joins runs that touch into components, in the order of their first runs.
/// `runs` stand by rows from the top, each row from the left, and do not overlap.
std::vector<Component> connectedComponents(const std::vector<Run> &runs);

} // namespace recognition
