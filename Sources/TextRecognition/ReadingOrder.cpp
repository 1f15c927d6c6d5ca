// SPDX-License-Identifier: MIT
#include "ReadingOrder.h"

#include <cstdlib>
#include <numeric>

namespace recognition {

namespace {

using Indices = std::vector<std::size_t>;

/// An interval of columns.
struct Gap
{
    int left = 0;
    int right = 0;
    int width() const { return right - left; }
};

class Order
{
public:
    explicit Order(const std::vector<Piece> &pieces)
        : m_pieces(pieces)
    {
    }

    std::vector<Row> rows()
    {
        Indices all(m_pieces.size());
        std::iota(all.begin(), all.end(), std::size_t(0));
        region(std::move(all), 0);
        return std::move(m_rows);
    }

private:
    const Box &box(std::size_t i) const { return m_pieces[i].box; }

    Box bounds(const Indices &members) const
    {
        Box all = box(members.front());
        for (const std::size_t i : members) {
            all.unite(box(i));
        }
        return all;
    }

    bool isRightToLeft(const Indices &members) const
    {
        long balance = 0;
        for (const std::size_t i : members) {
            balance += m_pieces[i].rightToLeft ? box(i).width() : -box(i).width();
        }
        return balance > 0;
    }

    int letterHeight(const Indices &members) const
    {
        std::vector<int> heights;
        for (const std::size_t i : members) {
            heights.push_back(m_pieces[i].letterHeight);
        }
        const auto middle = heights.begin() + std::ptrdiff_t(heights.size() / 2);
        std::nth_element(heights.begin(), middle, heights.end());
        return std::max(1, *middle);
    }

    /// Bands of pieces with nothing but background between one and the next.
    std::vector<Indices> bands(Indices members) const
    {
        std::sort(members.begin(), members.end(),
                  [this](std::size_t a, std::size_t b) { return box(a).top < box(b).top; });
        std::vector<Indices> all;
        int bottom = 0;
        for (const std::size_t i : members) {
            // Descenders and the edges around letters may touch the next line.
            const int slack = m_pieces[i].letterHeight / 4;
            if (all.empty() || box(i).top + slack >= bottom) {
                all.push_back({i});
            } else {
                all.back().push_back(i);
            }
            bottom = all.back().size() == 1 ? box(i).bottom : std::max(bottom, box(i).bottom);
        }
        return all;
    }

    /// The columns between `members` where nothing stands.
    std::vector<Gap> gaps(const Indices &members) const
    {
        std::vector<Gap> taken;
        for (const std::size_t i : members) {
            taken.push_back({box(i).left, box(i).right});
        }
        std::sort(taken.begin(), taken.end(),
                  [](const Gap &a, const Gap &b) { return a.left < b.left; });
        std::vector<Gap> free;
        if (taken.empty()) {
            return free;
        }
        int right = taken.front().right;
        for (const Gap &gap : taken) {
            if (gap.left > right) {
                free.push_back({right, gap.left});
            }
            right = std::max(right, gap.right);
        }
        return free;
    }

    /// Whether text left and right of a gutter is read side after side, not row after row.
    bool areColumns(const Indices &left, const Indices &right) const
    {
        if (left.size() < 2 || right.size() < 2) {
            return false;
        }
        const Indices &fewer = left.size() < right.size() ? left : right;
        const Indices &more = left.size() < right.size() ? right : left;
        // Cells of one row stand on one line; the lines of two panes do not.
        std::size_t matched = 0;
        for (const std::size_t i : fewer) {
            for (const std::size_t k : more) {
                const int off = std::abs(box(i).centreY2() - box(k).centreY2());
                if (off <= std::max(m_pieces[i].letterHeight, m_pieces[k].letterHeight) * 7 / 10) {
                    ++matched;
                    break;
                }
            }
        }
        const bool aligned = 10 * matched >= 7 * fewer.size();
        const bool severalLines = fewer.size() >= 2 && more.size() >= 3;
        if (aligned) {
            return severalLines && isProse(left, alignedProse) && isProse(right, alignedProse);
        }
        return fewer.size() >= 3 ||
               (severalLines && isProse(left, looseProse) && isProse(right, looseProse));
    }

    /// How wide columns of prose are at least, in letter heights: dates and file names in the
    /// rows of a table are narrower than sentences.
    static constexpr int alignedProse = 18;
    static constexpr int looseProse = 9;

    /// Lines that fill their column: sentences, not labels.
    bool isProse(const Indices &members, int least) const
    {
        const int width = bounds(members).width();
        std::vector<int> widths;
        for (const std::size_t i : members) {
            widths.push_back(box(i).width());
        }
        const auto middle = widths.begin() + std::ptrdiff_t(widths.size() / 2);
        std::nth_element(widths.begin(), middle, widths.end());
        return *middle >= 0.6 * width && *middle >= least * letterHeight(members);
    }

    void region(Indices members, int depth)
    {
        if (members.empty()) {
            return;
        }
        const std::vector<Indices> all = bands(std::move(members));
        for (std::size_t first = 0; first < all.size();) {
            Indices left;
            Indices right;
            const std::size_t last = depth < 8 ? columnsFrom(all, first, left, right) : first;
            if (last > first || !left.empty()) {
                Indices both = left;
                both.insert(both.end(), right.begin(), right.end());
                if (isRightToLeft(both)) {
                    std::swap(left, right);
                }
                region(std::move(left), depth + 1);
                region(std::move(right), depth + 1);
                first = last;
            } else {
                addRows(all[first]);
                ++first;
            }
        }
    }

    /// The bands from `first` on that one gutter parts into columns, as the place after the last
    /// of them; `left` and `right` stay empty if there are none.
    std::size_t columnsFrom(const std::vector<Indices> &all, std::size_t first, Indices &left,
                            Indices &right) const
    {
        std::size_t best = first;
        for (const Gap &start : gaps(all[first])) {
            const int least = 3 * letterHeight(all[first]) / 2;
            if (start.width() < least) {
                continue;
            }
            Gap gutter = start;
            Indices lefts;
            Indices rights;
            std::size_t end = first;
            for (; end < all.size(); ++end) {
                const Gap narrowed = narrow(gutter, all[end]);
                if (narrowed.width() < least) {
                    break;
                }
                gutter = narrowed;
                for (const std::size_t i : all[end]) {
                    (box(i).right <= gutter.left ? lefts : rights).push_back(i);
                }
            }
            if (end > best && areColumns(lefts, rights)) {
                best = end;
                left = lefts;
                right = rights;
            }
        }
        return best;
    }

    /// What a band leaves of a gutter: nothing if something crosses it. Lines that fill their
    /// column may reach far into what a short first line left free.
    Gap narrow(Gap gutter, const Indices &band) const
    {
        for (const std::size_t i : band) {
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

    void addRows(Indices members)
    {
        std::sort(members.begin(), members.end(), [this](std::size_t a, std::size_t b) {
            return box(a).centreY2() < box(b).centreY2();
        });
        std::vector<Row> rows;
        std::vector<Box> boxes;
        for (const std::size_t i : members) {
            std::size_t best = rows.size();
            int most = 0;
            for (std::size_t r = 0; r < rows.size(); ++r) {
                const int shared = verticalOverlap(boxes[r], box(i));
                const int lower = std::min(boxes[r].height(), box(i).height());
                bool free = true;
                for (const std::size_t k : rows[r]) {
                    free = free && horizontalOverlap(box(k), box(i)) <= 0;
                }
                if (free && 2 * shared > lower && shared > most) {
                    most = shared;
                    best = r;
                }
            }
            if (best == rows.size()) {
                rows.push_back({i});
                boxes.push_back(box(i));
            } else {
                rows[best].push_back(i);
            }
        }
        for (Row &row : rows) {
            std::sort(row.begin(), row.end(),
                      [this](std::size_t a, std::size_t b) { return box(a).left < box(b).left; });
            if (isRightToLeft(row)) {
                std::reverse(row.begin(), row.end());
            }
            m_rows.push_back(std::move(row));
        }
    }

    const std::vector<Piece> &m_pieces;
    std::vector<Row> m_rows;
};

} // namespace

std::vector<Row> readingOrder(const std::vector<Piece> &pieces)
{
    return Order(pieces).rows();
}

} // namespace recognition
