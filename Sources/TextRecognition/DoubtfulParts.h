// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"
#include "Script.h"

#include <vector>

namespace recognition {

/// Columns of a prepared line.
struct LinePart
{
    int left = 0;
    int right = 0;
    /// Whether something in it was read as a number.
    bool hasNumber = false;

    int width() const { return right - left; }
};

/// The script of a line's model, and that of the model that may read parts of it better.
struct TwoScripts
{
    Script first = Script::Latin;
    Script second = Script::Latin;
};

/// The parts of a prepared line `width` pixels wide that another script's model may read better
/// than it is read in `words`, by a model of `script`, from the left: words less sure than `sure`,
/// those that are not in the lists of a model that is always sure, and numbers. Words side by side
/// are one part, with half the gaps to their neighbours.
std::vector<LinePart> doubtfulParts(QList<ReadWord> words, TwoScripts scripts, int width,
                                    double sure);

/// Whether words are a number in European digits, or a date, with its marks.
bool isNumber(const QList<ReadWord> &words);

} // namespace recognition
