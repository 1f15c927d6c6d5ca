// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace recognition {

/// Equally wide cells along one direction of a picture.
struct Comb
{
    /// The width of a cell, in pixels.
    double pitch = 0;
    /// Where the first boundary stands, from 0 to `pitch`.
    double phase = 0;
    /// How much ink stands at the boundaries of cells, 1 being as much as anywhere: what is set in
    /// cells has little there.
    double inkShare = 1;
};

/// What to look for in a profile.
struct CombSearch
{
    double leastPitch = 0;
    double mostPitch = 0;
};

/// How much ink of `profile`, which holds the ink of each column or row of pixels, stands at the
/// boundaries of cells `pitch` wide, compared with what stands there on average.
double inkAtBoundaries(const std::vector<float> &profile, double pitch, double phase);

/// The phase at which least ink stands at the boundaries.
Comb bestPhase(const std::vector<float> &profile, double pitch);

/// The cells with least ink at their boundaries that are at most a `share` wider or narrower than
/// `pitch`.
Comb refined(const std::vector<float> &profile, double pitch, double share);

/// The cells whose boundaries have least ink. Of cells that are about as good, the smallest: two
/// cells of text are as good a cell as one.
Comb bestComb(const std::vector<float> &profile, const CombSearch &search);

} // namespace recognition
