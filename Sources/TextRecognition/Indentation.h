// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <QString>

#include <vector>

namespace recognition {

/// A line of text and where it stands.
struct PlacedText
{
    Box box;
    QString text;
};

/// How many blanks each line is indented by, as in source code: the lines, in reading order, whose
/// characters are all equally wide count from the leftmost of those around them. 0 for others.
std::vector<int> indentations(const std::vector<PlacedText> &lines);

} // namespace recognition
