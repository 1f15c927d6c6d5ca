// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

#include <vector>

namespace recognition {

/// Text with an outline around every letter, as subtitles have, freed from what is behind it.
struct OutlinedText
{
    /// The page with each row of letters on a plain patch of its outline's grey; empty if there is
    /// no such text.
    GreyImage page;
    /// The patches, in pixels of the page.
    std::vector<Box> rows;
};

/// Looks for bright letters with dark outlines and dark ones with bright outlines on `page`.
///
/// Edges alone do not find them: an outline has two, letters inside and scenery outside, and what
/// is ink cannot be told from what surrounds it.
OutlinedText findOutlinedText(const GreyImage &page);

} // namespace recognition
