// SPDX-License-Identifier: MIT
#pragma once

#include "Marks.h"

#include <vector>

namespace recognition {

/// Whether a picture is noise all over: no pixel is like the one beside it or the one below, as
/// along any stroke of a letter.
bool isNoise(const GreyImage &page);

/// Whether a mark is a spot: a disc, square or diamond of one tone, and nothing else.
bool isSpot(const Mark &mark, const GreyImage &page);

/// Drops the spots among `marks` where a page has little else: the dots of a pattern or a printed
/// gradient, the stars of a night sky. Each of them could be an o, or part of any character. Rows
/// of them, as lead to the page numbers of a table of contents, are kept.
void dropGrain(std::vector<Mark> &marks, const GreyImage &page);

} // namespace recognition
