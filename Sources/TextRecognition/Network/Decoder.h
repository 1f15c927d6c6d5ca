// SPDX-License-Identifier: MIT
#pragma once

#include "Alphabet.h"
#include "Network.h"
#include "WordLists.h"

#include <vector>

namespace recognition {

/// A character where a line shows it.
struct DecodedCharacter
{
    /// In the alphabet.
    int id = Alphabet::none;
    /// Logarithm of how likely its least likely column is; lower outside listed words.
    float certainty = 0;
    /// Columns of the network's result.
    int left = 0;
    int right = 0;
    /// Whether it is the first of a listed word.
    bool startsWord = false;
    WordKind kind = WordKind::Unlisted;
};

/// The likeliest characters of a line, from the left, blanks included.
///
/// A beam search: a character is any number of columns with its codes in order, with columns of
/// `nothing` (the code that stands for no character) between; what is not a listed word has to be
/// so much surer to be taken.
std::vector<DecodedCharacter> decode(const CodeShares &shares, int nothing,
                                     const Alphabet &alphabet, const WordLists &lists);

} // namespace recognition
