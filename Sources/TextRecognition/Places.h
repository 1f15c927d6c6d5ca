// SPDX-License-Identifier: MIT
#pragma once

#include "Reading.h"

#include <vector>

namespace recognition {

/// Words of two readings of one line that stand on the same place.
struct Place
{
    Box box;
    QList<ReadWord> base;
    QList<ReadWord> other;
};

/// The places that hold all words of both readings, in no order. What overlaps is one place.
std::vector<Place> placesOf(const Reading &base, const Reading &other);

/// The words' confidence weighted by their length, 0 to 100.
double confidence(const QList<ReadWord> &words);

} // namespace recognition
