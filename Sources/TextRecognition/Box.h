// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace recognition {

/// A rectangle in pixels, origin top-left, y down; `right` and `bottom` are just outside.
struct Box
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool isEmpty() const { return right <= left || bottom <= top; }
    int centreX2() const { return left + right; }
    int centreY2() const { return top + bottom; }

    /// Grows to hold `other`.
    void unite(const Box &other)
    {
        left = std::min(left, other.left);
        top = std::min(top, other.top);
        right = std::max(right, other.right);
        bottom = std::max(bottom, other.bottom);
    }

    bool contains(const Box &other) const
    {
        return left <= other.left && top <= other.top && right >= other.right &&
               bottom >= other.bottom;
    }

    friend bool operator==(const Box &, const Box &) = default;
};

/// How many rows two boxes share; negative is the gap between them.
inline int verticalOverlap(const Box &a, const Box &b)
{
    return std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
}

/// How many columns two boxes share; negative is the gap between them.
inline int horizontalOverlap(const Box &a, const Box &b)
{
    return std::min(a.right, b.right) - std::max(a.left, b.left);
}

} // namespace recognition
