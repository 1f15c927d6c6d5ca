// SPDX-License-Identifier: MIT
#include "ReadingOrder.h"

#include "ColumnBand.h"
#include "Effort.h"

#include <algorithm>
#include <numeric>

namespace recognition {

namespace {

using Indices = std::vector<std::size_t>;

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
    std::vector<ColumnBand> bands(Indices members) const
    {
        const int wide = alignedProse * leastLetterHeight(members);
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
        std::vector<ColumnBand> bands;
        bands.reserve(all.size());
        for (Indices &band : all) {
            bands.emplace_back(m_pieces, std::move(band), wide);
        }
        return bands;
    }

    int leastLetterHeight(const Indices &members) const
    {
        int least = m_pieces[members.front()].letterHeight;
        for (const std::size_t i : members) {
            least = std::min(least, m_pieces[i].letterHeight);
        }
        return std::max(1, least);
    }

    /// Whether text left and right of a gutter is read side after side, not row after row.
    bool areColumns(const Indices &left, const Indices &right) const
    {
        if (countRows(left) < 2 || countRows(right) < 2) {
            return false;
        }
        const Indices &fewer = left.size() < right.size() ? left : right;
        const Indices &more = left.size() < right.size() ? right : left;
        const Beside beside = besides(fewer, more);
        const bool severalLines = fewer.size() >= 2 && more.size() >= 3;
        if (areAligned(beside.onLine, fewer.size()) ||
            (beside.onLine >= fewestAligned && beside.between == 0)) {
            return severalLines && isProse(left, alignedProse) && isProse(right, alignedProse);
        }
        return fewer.size() >= 3 ||
               (severalLines && isProse(left, looseProse) && isProse(right, looseProse));
    }

    /// Cells of one row stand on one line; the lines of two panes do not.
    static bool areAligned(std::size_t matched, std::size_t of) { return 10 * matched >= 7 * of; }

    /// So do the words of rows of which some end left of the gutter, if so many reach beyond it and
    /// nothing stands between two rows.
    static constexpr std::size_t fewestAligned = 2;

    std::size_t countRows(Indices members) const
    {
        std::ranges::sort(members, {}, [this](std::size_t i) { return box(i).centreY2(); });
        std::size_t rows = 0;
        std::size_t last = 0;
        for (const std::size_t i : members) {
            if (rows == 0 || !areOnOneLine(m_pieces[last], m_pieces[i])) {
                ++rows;
                last = i;
            }
        }
        return rows;
    }

    /// How many pieces of one side stand on a line with one of the other, and how many beside one
    /// but between its lines.
    struct Beside
    {
        std::size_t onLine = 0;
        std::size_t between = 0;
    };

    Beside besides(const Indices &some, Indices others) const
    {
        const auto middle = [this](std::size_t i) {
            return box(i).centreY2();
        };
        std::ranges::sort(others, {}, middle);
        int tallest = 0;
        for (const std::size_t i : others) {
            tallest = std::max({tallest, m_pieces[i].letterHeight, box(i).height()});
        }
        Beside beside;
        for (const std::size_t i : some) {
            // In halves of a pixel, as middles are: pieces farther away do not even overlap.
            const int reach = tallest + std::max(m_pieces[i].letterHeight, box(i).height());
            auto other = std::partition_point(others.begin(), others.end(), [&](std::size_t k) {
                return middle(k) < middle(i) - reach;
            });
            bool isOnLine = false;
            bool isBetween = false;
            for (; !isOnLine && other != others.end() && middle(*other) <= middle(i) + reach;
                 ++other) {
                isOnLine = areOnOneLine(m_pieces[i], m_pieces[*other]);
                isBetween = isBetween || 4 * verticalOverlap(box(i), box(*other)) >
                                             std::min(box(i).height(), box(*other).height());
            }
            beside.onLine += isOnLine ? 1 : 0;
            beside.between += !isOnLine && isBetween ? 1 : 0;
        }
        return beside;
    }

    /// Whether `areColumns` is surely false: most pieces of the smaller side stand on a line with
    /// one of the other, and few are as wide as prose. So it is of most gutters of a table.
    static bool areSurelyCells(const GutterSide &left, const GutterSide &right)
    {
        const GutterSide &fewer = left.pieces < right.pieces ? left : right;
        const auto isNarrow = [](const GutterSide &side) {
            return side.wide < side.pieces - side.pieces / 2;
        };
        return fewer.pieces < 2 ||
               (areAligned(fewer.matched, fewer.pieces) && (isNarrow(left) || isNarrow(right)));
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
        const std::vector<ColumnBand> all = bands(std::move(members));
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
                addRows(all[first].members());
                ++first;
            }
        }
    }

    /// The bands from `first` on that one gutter parts into columns, as the place after the last
    /// of them; `left` and `right` stay empty if there are none.
    std::size_t columnsFrom(const std::vector<ColumnBand> &all, std::size_t first, Indices &left,
                            Indices &right) const
    {
        std::size_t best = first;
        const int least = 3 * letterHeight(all[first].members()) / 2;
        for (const Gap &start : all[first].gaps()) {
            if (start.width() < least) {
                continue;
            }
            checkpoint();
            // What stays of the gutter through each band.
            std::vector<Gap> gutters;
            GutterSide leftSide;
            GutterSide rightSide;
            for (std::size_t band = first; band < all.size(); ++band) {
                const Gap narrowed = all[band].narrow(gutters.empty() ? start : gutters.back());
                if (narrowed.width() < least) {
                    break;
                }
                gutters.push_back(narrowed);
                all[band].addSides(narrowed, leftSide, rightSide);
            }
            const std::size_t end = first + gutters.size();
            if (end <= best || areSurelyCells(leftSide, rightSide)) {
                continue;
            }
            Indices lefts;
            Indices rights;
            for (std::size_t band = first; band < end; ++band) {
                for (const std::size_t i : all[band].members()) {
                    (box(i).right <= gutters[band - first].left ? lefts : rights).push_back(i);
                }
            }
            if (areColumns(lefts, rights)) {
                best = end;
                left = std::move(lefts);
                right = std::move(rights);
            }
        }
        return best;
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
                if (2 * shared <= lower || shared <= most) {
                    continue;
                }
                const bool isFree =
                    std::none_of(rows[r].begin(), rows[r].end(), [&](std::size_t k) {
                        return horizontalOverlap(box(k), box(i)) > 0;
                    });
                if (isFree) {
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
