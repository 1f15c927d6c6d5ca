// SPDX-License-Identifier: MIT
#include "ColumnBand.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace recognition {

int reachOnOneLine(int letterHeight)
{
    return letterHeight * 7 / 10;
}

bool areOnOneLine(const Piece &a, const Piece &b)
{
    return std::abs(a.box.centreY2() - b.box.centreY2()) <=
           reachOnOneLine(std::max(a.letterHeight, b.letterHeight));
}

ColumnBand::ColumnBand(const std::vector<Piece> &pieces, std::vector<std::size_t> members, int wide)
    : m_pieces(pieces)
    , m_members(std::move(members))
    , m_fromLeft(m_members)
    , m_right{0}
    , m_wide{0}
{
    std::sort(m_fromLeft.begin(), m_fromLeft.end(),
              [this](std::size_t a, std::size_t b) { return box(a).left < box(b).left; });
    for (const std::size_t member : m_fromLeft) {
        const bool isFirst = m_right.size() == 1;
        m_right.push_back(isFirst ? box(member).right
                                  : std::max(m_right.back(), box(member).right));
        m_wide.push_back(m_wide.back() + (box(member).width() >= wide ? 1 : 0));
    }
    match();
}

void ColumnBand::match()
{
    const std::size_t count = m_fromLeft.size();
    std::vector<std::size_t> byHeight(count);
    int tallest = 0;
    for (std::size_t place = 0; place < count; ++place) {
        byHeight[place] = place;
        tallest = std::max(tallest, m_pieces[m_fromLeft[place]].letterHeight);
    }
    const auto middle = [this](std::size_t place) {
        return box(m_fromLeft[place]).centreY2();
    };
    std::sort(byHeight.begin(), byHeight.end(),
              [&](std::size_t a, std::size_t b) { return middle(a) < middle(b); });
    // A piece left of a gutter stands on a line with one beyond it as long as the gutter is left of
    // the last that it stands on a line with; sums of these differences are counts.
    std::vector<std::ptrdiff_t> left(count + 1, 0);
    std::vector<std::ptrdiff_t> right(count + 1, 0);
    auto start = byHeight.begin();
    const int reach = reachOnOneLine(tallest);
    for (const std::size_t place : byHeight) {
        while (middle(*start) < middle(place) - reach) {
            ++start;
        }
        std::size_t first = place;
        std::size_t last = place;
        for (auto other = start; other != byHeight.end() && middle(*other) <= middle(place) + reach;
             ++other) {
            if (areOnOneLine(m_pieces[m_fromLeft[place]], m_pieces[m_fromLeft[*other]])) {
                first = std::min(first, *other);
                last = std::max(last, *other);
            }
        }
        if (last > place) {
            ++left[place + 1];
            --left[last + 1];
        }
        if (first < place) {
            ++right[first + 1];
            --right[place + 1];
        }
    }
    std::ptrdiff_t inLeft = 0;
    std::ptrdiff_t inRight = 0;
    for (std::size_t place = 0; place <= count; ++place) {
        m_matchedLeft.push_back(std::size_t(inLeft += left[place]));
        m_matchedRight.push_back(std::size_t(inRight += right[place]));
    }
}

std::vector<Gap> ColumnBand::gaps() const
{
    std::vector<Gap> free;
    for (std::size_t i = 1; i < m_fromLeft.size(); ++i) {
        if (box(m_fromLeft[i]).left > m_right[i]) {
            free.push_back({m_right[i], box(m_fromLeft[i]).left});
        }
    }
    return free;
}

Gap ColumnBand::narrow(Gap gutter) const
{
    const auto beyond =
        std::partition_point(m_fromLeft.begin(), m_fromLeft.end(),
                             [&](std::size_t member) { return box(member).left < gutter.right; });
    const auto count = std::size_t(beyond - m_fromLeft.begin());
    if (count == 0 || m_right[count] <= gutter.left) {
        return gutter;
    }
    for (const std::size_t i : m_members) {
        const bool fromLeft = box(i).left <= gutter.left;
        const bool fromRight = box(i).right >= gutter.right;
        if (fromLeft && fromRight) {
            return {};
        }
        const bool nearLeft = box(i).left - gutter.left < gutter.right - box(i).right;
        if (fromLeft || (!fromRight && nearLeft)) {
            gutter.left = std::max(gutter.left, box(i).right);
        } else {
            gutter.right = std::min(gutter.right, box(i).left);
        }
    }
    return gutter;
}

void ColumnBand::addSides(const Gap &gutter, GutterSide &left, GutterSide &right) const
{
    const auto beyond =
        std::partition_point(m_fromLeft.begin(), m_fromLeft.end(),
                             [&](std::size_t member) { return box(member).left < gutter.right; });
    const auto count = std::size_t(beyond - m_fromLeft.begin());
    left.pieces += count;
    left.wide += m_wide[count];
    left.matched += m_matchedLeft[count];
    right.pieces += m_fromLeft.size() - count;
    right.wide += m_wide.back() - m_wide[count];
    right.matched += m_matchedRight[count];
}

} // namespace recognition
