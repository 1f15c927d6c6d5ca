// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
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

/// The parts of a prepared line, `picture`, that another script's model may read better than it is
/// read in `words`, from the left: words less sure than `sure`, numbers, and between Latin and
/// Cyrillic script, whose letters look alike so that both models are sure, those in no list. Words
/// side by side are one part, which goes to the widest gaps before their neighbours.
std::vector<LinePart> doubtfulParts(QList<ReadWord> words, TwoScripts scripts,
                                    const GreyImage &picture, double sure);

/// Whether words are a number in European digits, or a date, with its marks.
bool isNumber(const QList<ReadWord> &words);

} // namespace recognition
