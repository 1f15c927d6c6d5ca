// SPDX-License-Identifier: MIT
#include "Comb.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace recognition {

namespace {

/// How far boundaries may be off at the far end of a profile, in pixels: a third of the narrowest
/// gap between letters where a comb is looked for, less where it is refined.
constexpr double drift = 0.35;
constexpr double fineDrift = 0.1;

/// Phases are tried in steps of this many pixels, half of the narrowest gap between letters.
constexpr double phaseStep = 0.5;

/// A wider cell has to have so much less ink at its boundaries to be preferred to a narrower one.
constexpr double asGood = 0.06;

/// The ink at `place`, between two pixels' centres.
double inkAt(const std::vector<float> &profile, double place)
{
    const double centre = place - 0.5;
    const auto left = std::ptrdiff_t(std::floor(centre));
    const double share = centre - double(left);
    const auto size = std::ptrdiff_t(profile.size());
    const double a = left >= 0 && left < size ? double(profile[std::size_t(left)]) : 0;
    const double b = left + 1 >= 0 && left + 1 < size ? double(profile[std::size_t(left + 1)]) : 0;
    return a + (b - a) * share;
}

double totalOf(const std::vector<float> &profile)
{
    return std::accumulate(profile.begin(), profile.end(), 0.0);
}

double inkAtBoundaries(const std::vector<float> &profile, double pitch, double phase, double total)
{
    double sum = 0;
    for (double place = phase; place <= double(profile.size()); place += pitch) {
        sum += inkAt(profile, place);
    }
    return sum * pitch / total;
}

Comb bestPhase(const std::vector<float> &profile, double pitch, double total)
{
    Comb best{pitch, 0, 1e9};
    for (double phase = 0; phase < pitch; phase += phaseStep) {
        const double share = inkAtBoundaries(profile, pitch, phase, total);
        if (share < best.inkShare) {
            best = {pitch, phase, share};
        }
    }
    return best;
}

} // namespace

double inkAtBoundaries(const std::vector<float> &profile, double pitch, double phase)
{
    const double total = totalOf(profile);
    return total > 0 ? inkAtBoundaries(profile, pitch, phase, total) : 1;
}

Comb bestPhase(const std::vector<float> &profile, double pitch)
{
    const double total = totalOf(profile);
    return total > 0 ? bestPhase(profile, pitch, total) : Comb{pitch, 0, 1};
}

Comb refined(const std::vector<float> &profile, double pitch, double share)
{
    const double total = totalOf(profile);
    Comb best{pitch, 0, 1e9};
    const double step = fineDrift * pitch / std::max(1.0, double(profile.size()) / pitch);
    for (double tried = pitch * (1 - share); tried <= pitch * (1 + share); tried += step) {
        const Comb comb = bestPhase(profile, tried, total);
        if (comb.inkShare < best.inkShare) {
            best = comb;
        }
    }
    return total > 0 ? best : Comb{pitch, 0, 1};
}

Comb bestComb(const std::vector<float> &profile, const CombSearch &search)
{
    const double total = totalOf(profile);
    if (total <= 0 || search.leastPitch <= 1) {
        return {};
    }
    Comb best{0, 0, 1e9};
    for (double pitch = search.leastPitch; pitch <= search.mostPitch;) {
        const Comb comb = bestPhase(profile, pitch, total);
        if (comb.inkShare < best.inkShare) {
            best = comb;
        }
        pitch += drift * pitch / std::max(1.0, double(profile.size()) / pitch);
    }
    if (best.pitch / 2 >= search.leastPitch) {
        const Comb half = refined(profile, best.pitch / 2, drift / 10);
        if (half.inkShare <= best.inkShare + asGood) {
            return half;
        }
    }
    return best;
}

} // namespace recognition
