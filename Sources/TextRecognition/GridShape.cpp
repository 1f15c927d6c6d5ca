// SPDX-License-Identifier: MIT
#include "GridShape.h"

#include "GridInk.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// The closest rows of a block, in cell widths: bitmap type is set as close as one and a half.
constexpr double leastRow = 1.4;

/// The most ink at the boundaries of cells left and right of its lines, where there may be nothing
/// but a row of `+` that touch.
constexpr double mostInkAside = 0.7;

/// The most ink where one row ends and the next begins, of a block and of two rows alone.
constexpr double mostInkOfRows = 0.35;
constexpr double mostInkOfTwoRows = 0.2;

/// What is fainter than this share of a block's usual ink counts as background.
constexpr double faintest = 0.2;

/// Rows of whole pixels may have so much more ink at their boundaries.
constexpr double wholeRows = 0.02;

/// Cells whose far end is off by less than this many pixels if they are whole pixels wide are so.
constexpr double wholeDrift = 1;

/// The fewest characters that a block has.
constexpr int fewestCharacters = 16;

/// The rows and columns of a block.
class BlockShape
{
public:
    BlockShape(const GreyImage &page, const Comb &comb, const std::vector<const TextLine *> &lines)
        : m_comb(comb)
        , m_box(lines.front()->box)
    {
        for (const TextLine *line : lines) {
            m_box.unite(line->box);
        }
        const int aside = int(std::lround(mostBlankColumns * comb.pitch));
        const int above = int(std::lround(mostBlank * comb.pitch));
        m_region = {std::max(0, m_box.left - aside), std::max(0, m_box.top - above),
                    std::min(page.width, m_box.right + aside),
                    std::min(page.height, m_box.bottom + above)};
        m_ink = inkOf(page, m_region, int(8 * comb.pitch), int(2 * comb.pitch));
    }

    std::optional<Grid> grid()
    {
        const int above = m_box.top - m_region.top;
        const std::vector<float> profile = rowProfile(cropped(m_ink, inRegion(m_box)));
        Comb rows{double(m_box.height() + 2), m_box.height() + 1.0, 0};
        if (m_box.height() > mostRow * m_comb.pitch) {
            rows = bestComb(profile, {leastRow * m_comb.pitch, mostRow * m_comb.pitch});
        } else {
            rows = shortBlock(profile);
        }
        // Rows of whole pixels, as most are, are cut at the same pixel all.
        const Comb whole = bestPhase(profile, std::round(rows.pitch));
        if (whole.inkShare <= rows.inkShare + wholeRows) {
            rows = whole;
        }
        if (rows.inkShare > mostInkOfRows) {
            return {};
        }
        rows.phase += above;
        return fill(rows);
    }

private:
    Box inRegion(const Box &box) const
    {
        return {box.left - m_region.left, box.top - m_region.top, box.right - m_region.left,
                box.bottom - m_region.top};
    }

    /// One row, or two of them.
    Comb shortBlock(const std::vector<float> &profile) const
    {
        const double height = double(profile.size());
        if (height > 2 * leastRow * m_comb.pitch) {
            const Comb two =
                bestComb(profile, {std::max(leastRow * m_comb.pitch, 0.42 * height), 0.7 * height});
            if (two.inkShare < mostInkOfTwoRows) {
                return two;
            }
        }
        return {height + 2, height + 1, 0};
    }

    /// What is known of a cell of the region.
    struct Cells
    {
        int firstRow = 0;
        int lastRow = 0;
        int firstColumn = 0;
        int lastColumn = 0;
    };

    Box cell(const Comb &rows, int row, int column) const
    {
        const double left = m_left + column * m_comb.pitch;
        const double top = rows.phase + row * rows.pitch;
        const double side = blankSide * m_comb.pitch;
        return {std::max(0, int(std::floor(left + side))), std::max(0, int(std::lround(top))),
                std::min(m_ink.width, int(std::ceil(left + m_comb.pitch - side))),
                std::min(m_ink.height, int(std::lround(top + rows.pitch)))};
    }

    int peak(const Box &box) const
    {
        int most = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                most = std::max<int>(most, m_ink.at(x, y));
            }
        }
        return most;
    }

    /// Whether what stands in `box`, a part of the region, stands in cells.
    bool isInCells(const Comb &rows, const Box &box, double mostAcross = mostInkOfLine) const
    {
        if (box.isEmpty()) {
            return false;
        }
        const GreyImage part = cropped(m_ink, box);
        const auto from = [](double phase, int at, double pitch) {
            const double offset = std::fmod(phase - at, pitch);
            return offset < 0 ? offset + pitch : offset;
        };
        return inkAtBoundaries(columnProfile(part), m_comb.pitch,
                               from(m_left, box.left, m_comb.pitch)) <= mostAcross &&
               inkAtBoundaries(rowProfile(part), rows.pitch,
                               from(rows.phase, box.top, rows.pitch)) <= mostInkOfLine;
    }

    std::optional<Grid> fill(const Comb &rows)
    {
        const Box box = inRegion(m_box);
        const double offset = std::fmod(m_comb.phase - m_region.left, m_comb.pitch);
        m_left = offset > 0 ? offset - m_comb.pitch : offset;
        const auto rowAt = [&](double y) {
            return int(std::floor((y - rows.phase) / rows.pitch));
        };
        const auto columnAt = [&](double x) {
            return int(std::floor((x - m_left) / m_comb.pitch));
        };
        const auto rowTop = [&](int row) {
            return std::clamp(int(std::lround(rows.phase + row * rows.pitch)), 0, m_ink.height);
        };
        int first = rowAt(box.top + 0.25 * rows.pitch);
        int last = rowAt(box.bottom - 0.25 * rows.pitch);
        while (rowTop(first) > 0 &&
               isInCells(rows, {box.left, rowTop(first - 1), box.right, rowTop(first)})) {
            --first;
        }
        while (rowTop(last + 1) < m_ink.height &&
               isInCells(rows, {box.left, rowTop(last + 1), box.right, rowTop(last + 2)})) {
            ++last;
        }
        const int top = rowTop(first);
        const int bottom = rowTop(last + 1);
        const int left = isInCells(rows, {0, top, box.left, bottom}, mostInkAside) ? 0 : box.left;
        const int right = isInCells(rows, {box.right, top, m_ink.width, bottom}, mostInkAside)
                              ? m_ink.width
                              : box.right;

        const int firstColumn = columnAt(left + 0.25 * m_comb.pitch);
        const int lastColumn = columnAt(right - 0.25 * m_comb.pitch);
        std::vector<int> peaks;
        for (int row = first; row <= last; ++row) {
            for (int column = firstColumn; column <= lastColumn; ++column) {
                if (const int ink = peak(cell(rows, row, column)); ink >= leastInk) {
                    peaks.push_back(ink);
                }
            }
        }
        if (int(peaks.size()) < fewestCharacters) {
            return {};
        }
        std::nth_element(peaks.begin(), peaks.begin() + std::ptrdiff_t(peaks.size() / 2),
                         peaks.end());
        const int least = std::max(leastInk, int(faintest * peaks[peaks.size() / 2]));

        Grid grid;
        int leftmost = lastColumn + 1;
        int rightmost = firstColumn - 1;
        for (int row = first; row <= last; ++row) {
            bool isBlank = true;
            for (int column = firstColumn; column <= lastColumn; ++column) {
                if (peak(cell(rows, row, column)) >= least) {
                    isBlank = false;
                    leftmost = std::min(leftmost, column);
                    rightmost = std::max(rightmost, column);
                }
            }
            if (!isBlank) {
                grid.rows.push_back({rowTop(row) + m_region.top, rowTop(row + 1) + m_region.top});
            }
        }
        if (grid.rows.empty()) {
            return {};
        }
        grid.columns = rightmost - leftmost + 1;
        // Cells of whole pixels, as most terminals have them, are cut at the same pixel all.
        const double whole = std::round(m_comb.pitch);
        const bool isWhole = std::abs(whole - m_comb.pitch) * grid.columns < wholeDrift;
        grid.cellWidth = isWhole ? whole : m_comb.pitch;
        grid.left = m_region.left + m_left + leftmost * m_comb.pitch +
                    (m_comb.pitch - grid.cellWidth) * grid.columns / 2;
        grid.leastInk = least;
        grid.box = {int(std::floor(grid.left)), grid.rows.front().top,
                    int(std::ceil(grid.columnLeft(grid.columns))), grid.rows.back().bottom};
        return grid;
    }

    const Comb m_comb;
    Box m_box;
    /// Where more of the block may stand.
    Box m_region;
    GreyImage m_ink;
    /// Where a column begins in the region.
    double m_left = 0;
};

} // namespace

std::optional<Grid> gridOf(const GreyImage &page, const Comb &comb,
                           const std::vector<const TextLine *> &lines)
{
    return BlockShape(page, comb, lines).grid();
}

} // namespace recognition
