// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace recognition {

/// The certainty of the impossible.
inline constexpr float leastCertainty = -20;

/// The codes that a column is likely to show, and how sure each is: the logarithm of its share,
/// less what a step costs.
///
/// The likeliest is followed, the second if it is not all but impossible, and nothing always, so
/// that a search never comes to an end before its line.
class ColumnCodes
{
public:
    struct Code
    {
        int code = 0;
        float certainty = 0;
        /// If the column is shared with nothing.
        float withNothing = 0;
        /// If it is shared with nothing and the other one of the two likeliest.
        float withNeighbour = 0;
    };

    /// `shares` of `count` codes, 1 at least, in the next column.
    void rank(const float *shares, int count, int nothing);

    const Code *begin() const { return m_codes.data(); }
    const Code *end() const { return m_codes.data() + m_count; }
    /// Null if it is not followed.
    const Code *find(int code) const;
    /// Whether both are the two likeliest, in any order.
    bool areLikeliest(int one, int other) const;

private:
    void add(const float *shares, int code, int nothing, int neighbour);

    std::array<Code, 3> m_codes;
    int m_count = 0;
    int m_first = 0;
    int m_second = 0;
};

} // namespace recognition
