// SPDX-License-Identifier: MIT
#include "Grain.h"

#include "BoxGrid.h"
#include "Effort.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace recognition {

namespace {

/// The sums that tell how much neighbouring pixels have in common.
struct Likeness
{
    double variance = 0;
    double beside = 0;
    double below = 0;

    bool isNoise() const
    {
        // Of letters on any ground it is more than a half; 0 where chance alone decides.
        constexpr double most = 0.2;
        return beside < most * variance && below < most * variance;
    }
};

Likeness likenessIn(const GreyImage &page, const Box &box)
{
    double sum = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            sum += page.at(x, y);
        }
    }
    const double mean = sum / (double(box.width()) * box.height());
    Likeness likeness;
    for (int y = box.top; y + 1 < box.bottom; ++y) {
        for (int x = box.left; x + 1 < box.right; ++x) {
            const double own = page.at(x, y) - mean;
            likeness.variance += own * own;
            likeness.beside += own * (page.at(x + 1, y) - mean);
            likeness.below += own * (page.at(x, y + 1) - mean);
        }
    }
    return likeness;
}

/// The ink of a mark's box, row by row.
class Ink
{
public:
    Ink(const Box &box, const GreyImage &page)
        : m_width(box.width())
        , m_pixels(std::size_t(box.width()) * std::size_t(box.height()))
    {
        // An edge belongs to what it goes around, so that the corners show the ground.
        const int ground =
            (page.at(box.left, box.top) + page.at(box.right - 1, box.top) +
             page.at(box.left, box.bottom - 1) + page.at(box.right - 1, box.bottom - 1)) /
            4;
        const int tone = page.at(box.centreX2() / 2, box.centreY2() / 2);
        std::size_t next = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                m_pixels[next++] = 2 * std::abs(page.at(x, y) - ground) > std::abs(tone - ground);
            }
        }
    }

    bool isAt(int x, int y) const
    {
        return m_pixels[std::size_t(y) * std::size_t(m_width) + std::size_t(x)] != 0;
    }

private:
    int m_width;
    std::vector<char> m_pixels;
};

/// Where ink begins and ends on one row or column, and whether it is in one piece.
struct Span
{
    int first = -1;
    int last = -1;
    int count = 0;

    void take(int at)
    {
        first = first < 0 ? at : first;
        last = at;
        ++count;
    }
    bool isOne() const { return count == 0 || count == last - first + 1; }
};

/// Whether a spot has another beside it, at its own height and near, and none above or below that
/// is hardly further: `spots` are the numbers of the spots among `marks`.
bool isInRow(const Box &spot, const std::vector<Mark> &marks, const BoxGrid &spots)
{
    constexpr int mostApart = 4; // widths of the spot
    const int reach = mostApart * spot.width();
    int nearest = reach + 1;
    int nearestOffRow = 2 * reach;
    spots.forEachNear(
        {spot.left - reach, spot.top - 2 * reach, spot.right + reach, spot.bottom + 2 * reach},
        [&](std::size_t number) {
            const Box &other = marks[number].box;
            const int across = std::abs(other.centreX2() - spot.centreX2()) / 2;
            const int down = std::abs(other.centreY2() - spot.centreY2()) / 2;
            if (down <= 1 && across > 0) {
                nearest = std::min(nearest, across);
            } else if (down > 1 && across <= reach) {
                nearestOffRow = std::min(nearestOffRow, std::max(across, down));
            }
        });
    return nearest <= reach && 2 * nearestOffRow > 3 * nearest;
}

/// For work on one mark after another.
void checkEvery(std::size_t i)
{
    if (i % 256 == 0) {
        checkpoint();
    }
}

} // namespace

bool isNoise(const GreyImage &page)
{
    constexpr int side = 64;
    const int most = ((page.width + side - 1) / side) * ((page.height + side - 1) / side) / 20;
    int noisy = 0;
    int others = 0;
    for (int y = 0; y < page.height; y += side) {
        checkpoint();
        for (int x = 0; x < page.width; x += side) {
            const Likeness likeness = likenessIn(
                page, {x, y, std::min(x + side, page.width), std::min(y + side, page.height)});
            if (likeness.variance > 0) {
                ++(likeness.isNoise() ? noisy : others);
            }
            if (others > most) {
                return false;
            }
        }
    }
    return noisy > 0 && noisy >= 19 * others;
}

bool isSpot(const Mark &mark, const GreyImage &page)
{
    const Box &box = mark.box;
    // What is longer is a dash or a stroke.
    if (2 * box.width() > 3 * box.height() || 2 * box.height() > 3 * box.width()) {
        return false;
    }
    const Ink ink(box, page);
    Box inked{box.width(), box.height(), 0, 0};
    int pixels = 0;
    for (int y = 0; y < box.height(); ++y) {
        Span row;
        for (int x = 0; x < box.width(); ++x) {
            if (ink.isAt(x, y)) {
                row.take(x);
            }
        }
        if (!row.isOne()) {
            return false;
        }
        if (row.count > 0) {
            inked.unite({row.first, y, row.last + 1, y + 1});
            pixels += row.count;
        }
    }
    for (int x = inked.left; x < inked.right; ++x) {
        Span column;
        for (int y = inked.top; y < inked.bottom; ++y) {
            if (ink.isAt(x, y)) {
                column.take(y);
            }
        }
        if (!column.isOne()) {
            return false;
        }
    }
    // A diamond of this many pixels covers a little more than half of its box.
    return pixels > 0 && 2 * pixels > inked.width() * inked.height();
}

void dropGrain(std::vector<Mark> &marks, const GreyImage &page)
{
    // Bullets and full stops are fewer among letters, and a few dots are no pattern.
    constexpr std::size_t fewest = 100;
    std::vector<char> isGrain(marks.size());
    BoxGrid spots(page.width, page.height);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        checkEvery(i);
        isGrain[i] = isSpot(marks[i], page);
        if (isGrain[i]) {
            spots.add(i, marks[i].box);
        }
    }
    const auto count = [&isGrain] {
        return std::size_t(std::count(isGrain.begin(), isGrain.end(), 1));
    };
    if (count() < fewest) {
        return;
    }
    for (std::size_t i = 0; i < marks.size(); ++i) {
        checkEvery(i);
        isGrain[i] = isGrain[i] && !isInRow(marks[i].box, marks, spots);
    }
    if (count() < fewest || 4 * count() < 3 * marks.size()) {
        return;
    }
    std::vector<Mark> others;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (!isGrain[i]) {
            others.push_back(std::move(marks[i]));
        }
    }
    marks = std::move(others);
}

} // namespace recognition
