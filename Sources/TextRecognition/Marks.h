// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <vector>

namespace recognition {

/// Something that may be a letter, a part of one, or letters that touch.
struct Mark
{
    Box box;
    /// Found only after taking apart something bigger, as on a photograph.
    bool textured = false;
    /// The strongest edge in it, in grey levels.
    int strength = 0;
    /// How many pixels of it stand in each row of its box.
    std::vector<int> rows = {};
};

/// The marks of a picture: what has edges and is neither a rule, nor an outline around other
/// things (button, card, window), nor a solid pill (switch), nor a picture.
///
/// What is too big to be text at one contrast is taken apart at the next higher one, so that
/// letters on a photograph come off their background while faint letters elsewhere are kept.
std::vector<Mark> findMarks(const GreyImage &image);

} // namespace recognition
