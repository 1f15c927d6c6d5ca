// SPDX-License-Identifier: MIT
#include "Controls.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace recognition {

namespace {

/// The height of the biggest switches, on a screen of twice the usual density.
constexpr int tallestSwitch = 90;

/// The smallest and the largest disc or square, by its edges; smaller ones are bullets and icons,
/// which stand in a line with text.
constexpr int smallestSolid = 28;
constexpr int largestSolid = 150;
/// How wide the edge of a plain shape is at most, in pixels, and by how many grey levels at least
/// its inside differs from what is around it.
constexpr int widestEdge = 4;
constexpr int leastFilling = 10;

struct Sides
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    /// Share of the component's pixels that lie within the margin of its box.
    double atBorder = 0;
};

/// Which part of each side of its box a component covers within `margin` pixels of it.
Sides coveredSides(const Component &component, int margin)
{
    const Box &box = component.box;
    std::vector<std::uint8_t> rows(std::size_t(box.height()) * 2, 0);
    std::vector<std::uint8_t> columns(std::size_t(box.width()) * 2, 0);
    int border = 0;
    for (const Run &run : component.runs) {
        const std::size_t row = std::size_t(run.y - box.top) * 2;
        if (run.left < box.left + margin) {
            rows[row] = 1;
        }
        if (run.right > box.right - margin) {
            rows[row + 1] = 1;
        }
        const bool top = run.y < box.top + margin;
        const bool bottom = run.y >= box.bottom - margin;
        for (int x = run.left; (top || bottom) && x < run.right; ++x) {
            const std::size_t column = std::size_t(x - box.left) * 2;
            if (top) {
                columns[column] = 1;
            }
            if (bottom) {
                columns[column + 1] = 1;
            }
        }
        if (top || bottom) {
            border += run.right - run.left;
        } else {
            border += std::max(0, std::min(run.right, box.left + margin) - run.left);
            border += std::max(0, run.right - std::max(run.left, box.right - margin));
        }
    }
    Sides sides;
    for (std::size_t i = 0; i < rows.size(); i += 2) {
        sides.left += rows[i];
        sides.right += rows[i + 1];
    }
    for (std::size_t i = 0; i < columns.size(); i += 2) {
        sides.top += columns[i];
        sides.bottom += columns[i + 1];
    }
    sides.left /= box.height();
    sides.right /= box.height();
    sides.top /= box.width();
    sides.bottom /= box.width();
    sides.atBorder = double(border) / component.pixels;
    return sides;
}

/// How far from the sides of its box a component begins in each row and column.
struct Profile
{
    explicit Profile(const Component &component)
        : left(std::size_t(component.box.height()), component.box.width())
        , right(left)
        , top(std::size_t(component.box.width()), component.box.height())
        , bottom(top)
    {
        const Box &box = component.box;
        for (const Run &run : component.runs) {
            const int y = run.y - box.top;
            int &l = left[std::size_t(y)];
            int &r = right[std::size_t(y)];
            l = std::min(l, run.left - box.left);
            r = std::min(r, box.right - run.right);
            for (int x = run.left - box.left; x < run.right - box.left; ++x) {
                int &t = top[std::size_t(x)];
                int &b = bottom[std::size_t(x)];
                t = std::min(t, y);
                b = std::min(b, box.bottom - 1 - run.y);
            }
        }
    }

    std::vector<int> left;
    std::vector<int> right;
    std::vector<int> top;
    std::vector<int> bottom;
};

/// Whether hardly any two values that belong together differ by more than `tolerance`; one or two
/// may in the rows of a shadow.
template <typename Iterator>
bool areAlike(const std::vector<int> &a, Iterator b, int tolerance)
{
    std::size_t different = 0;
    for (const int value : a) {
        different += std::abs(value - *b++) > tolerance;
    }
    return 12 * different <= a.size();
}

/// The side of the largest square in `box` without any edge.
int largestFlatSquare(const GreyImage &strength, const Box &box)
{
    constexpr int flat = 10;
    int largest = 0;
    std::vector<int> sides(std::size_t(box.width()) + 1, 0);
    for (int y = box.top; y < box.bottom; ++y) {
        const std::uint8_t *line = strength.row(y) + box.left;
        int diagonal = 0;
        for (std::size_t x = 1; x < sides.size(); ++x) {
            const int above = sides[x];
            sides[x] = line[x - 1] > flat ? 0 : 1 + std::min({above, sides[x - 1], diagonal});
            diagonal = above;
            largest = std::max(largest, sides[x]);
        }
    }
    return largest;
}

} // namespace

bool isOutline(const Component &component)
{
    const Box &box = component.box;
    if (box.height() < 10 || box.width() < 10) {
        return false;
    }
    const int shorter = std::min(box.width(), box.height());
    const bool square = box.width() < 1.6 * box.height();
    if (square && shorter < 60) {
        return false;
    }
    const int margin = std::clamp(shorter / 4, 3, 12);
    const Sides sides = coveredSides(component, margin);
    // Round ends cover their sides in part only.
    return sides.atBorder > 0.97 && sides.top > 0.7 && sides.bottom > 0.7 &&
           (sides.left > 0.3 || sides.right > 0.3);
}

bool isSwitch(const Component &component, const GreyImage &strength)
{
    const Box &box = component.box;
    const int width = box.width();
    const int height = box.height();
    if (height < 12 || height > tallestSwitch || 10 * width < 13 * height ||
        10 * width > 28 * height) {
        return false;
    }
    // Across its middle there are its two sides and those of the knob; a word has more strokes.
    const int middleRow = box.top + height / 2;
    if (std::count_if(component.runs.begin(), component.runs.end(),
                      [middleRow](const Run &run) { return run.y == middleRow; }) > 4) {
        return false;
    }
    const Profile profile(component);
    // A shadow below makes it a little lopsided.
    const int tolerance = 2 + height / 8;
    if (!areAlike(profile.left, profile.left.rbegin(), tolerance) ||
        !areAlike(profile.right, profile.right.rbegin(), tolerance) ||
        !areAlike(profile.top, profile.bottom.begin(), tolerance)) {
        return false;
    }
    const auto isDeep = [limit = 2 + height / 5](int depth) {
        return depth > limit;
    };
    const std::ptrdiff_t end = height / 2;
    if (std::any_of(profile.top.begin() + end, profile.top.end() - end, isDeep)) {
        return false;
    }
    // Round ends: にコ has straight ones.
    const auto isRound = [least = height / 8](const std::vector<int> &side) {
        return side[1] >= least && side[side.size() - 2] >= least;
    };
    if (!isRound(profile.left) || !isRound(profile.right)) {
        return false;
    }
    const auto middle = std::size_t(height / 2);
    if (isDeep(profile.left[middle]) || isDeep(profile.right[middle])) {
        return false;
    }
    return 5 * largestFlatSquare(strength, box) >= 2 * height;
}

bool isSolid(const Component &component, const GreyImage &page)
{
    const Box &box = component.box;
    const int shorter = std::min(box.width(), box.height());
    const int longer = std::max(box.width(), box.height());
    if (shorter < smallestSolid || longer > largestSolid || 10 * longer > 11 * shorter) {
        return false;
    }
    const Profile profile(component);
    for (const Run &run : component.runs) {
        const auto y = std::size_t(run.y - box.top);
        for (int x = run.left - box.left; x < run.right - box.left; ++x) {
            const auto column = std::size_t(x);
            const int depth = std::min({x - profile.left[y], box.width() - 1 - profile.right[y] - x,
                                        int(y) - profile.top[column],
                                        box.height() - 1 - profile.bottom[column] - int(y)});
            if (depth >= widestEdge) {
                return false;
            }
        }
    }
    const int x = (box.left + box.right) / 2;
    const int y = (box.top + box.bottom) / 2;
    const int within = widestEdge + 1;
    const std::array inside{page.at(x, box.top + within), page.at(x, box.bottom - 1 - within),
                            page.at(box.left + within, y), page.at(box.right - 1 - within, y)};
    const int left = std::max(0, box.left - 1);
    const int top = std::max(0, box.top - 1);
    const int right = std::min(page.width - 1, box.right);
    const int bottom = std::min(page.height - 1, box.bottom);
    const std::array around{page.at(left, top), page.at(right, top), page.at(left, bottom),
                            page.at(right, bottom)};
    return std::ranges::all_of(inside, [&](int in) {
        return std::ranges::all_of(around,
                                   [in](int out) { return std::abs(in - out) >= leastFilling; });
    });
}

} // namespace recognition
