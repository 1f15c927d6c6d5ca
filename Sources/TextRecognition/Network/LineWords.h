// SPDX-License-Identifier: MIT
#pragma once

#include "Decoder.h"
#include "GreyImage.h"
#include "Reading.h"

#include <vector>

namespace recognition {

/// A line that was read, and where its characters stand in its picture.
struct DecodedLine
{
    const GreyImage &picture;
    /// The part of the picture with ink.
    Box inked;
    /// Where the network's columns begin, and how wide they are, in pixels of the picture.
    double left = 0;
    double columnWidth = 0;
    int columns = 0;
    const std::vector<DecodedCharacter> &characters;
};

/// The words of a line in reading order. Characters that models mix up, and whose looks tell them
/// apart, are put right: apostrophes, a capital L for a small one.
QList<ReadWord> wordsOfLine(const DecodedLine &line, const Alphabet &alphabet);

} // namespace recognition
