// SPDX-License-Identifier: MIT
#include "ColumnCodes.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// What a step costs anything, as the models were tuned for in their own engine.
constexpr float stepCost = -0.085F;

/// The second code is not followed if it is less likely.
constexpr float leastShare = 1e-5F;

constexpr int noCode = -1;

float certaintyOf(float share)
{
    static const float leastShareOfAll = std::exp(leastCertainty);
    return (share > leastShareOfAll ? std::log(share) : leastCertainty) + stepCost;
}

} // namespace

void ColumnCodes::add(const float *shares, int code, int nothing, int neighbour)
{
    const float shared = shares[code] + shares[nothing];
    m_codes[std::size_t(m_count++)] = {
        code, certaintyOf(shares[code]), certaintyOf(shared),
        neighbour == noCode ? leastCertainty : certaintyOf(shared + shares[neighbour])};
}

void ColumnCodes::rank(const float *shares, int count, int nothing)
{
    m_first = 0;
    m_second = noCode;
    for (int code = 1; code < count; ++code) {
        if (shares[code] > shares[m_first]) {
            m_second = m_first;
            m_first = code;
        } else if (m_second == noCode || shares[code] > shares[m_second]) {
            m_second = code;
        }
    }
    m_count = 0;
    add(shares, m_first, nothing, m_second);
    if (m_second != noCode && (shares[m_second] >= leastShare || m_second == nothing)) {
        add(shares, m_second, nothing, m_first);
    }
    if (!find(nothing)) {
        // Shared with nothing else.
        const int neighbour = noCode;
        add(shares, nothing, nothing, neighbour);
    }
}

const ColumnCodes::Code *ColumnCodes::find(int code) const
{
    const Code *found =
        std::find_if(begin(), end(), [code](const Code &other) { return other.code == code; });
    return found == end() ? nullptr : found;
}

bool ColumnCodes::areLikeliest(int one, int other) const
{
    return (one == m_first && other == m_second) || (one == m_second && other == m_first);
}

} // namespace recognition
