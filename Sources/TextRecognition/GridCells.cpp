// SPDX-License-Identifier: MIT
#include "GridCells.h"

#include "GridInk.h"

#include <cmath>
#include <cstdlib>

namespace recognition {

namespace {

/// A cell's ink is at least this share of its neighbours': a full stop of less than a pixel is grey
/// where letters are black.
constexpr double leastOfNeighbours = 0.6;

/// Neighbours within this many cells have the same colour, mostly.
constexpr int reach = 2;

/// A row of rows holds ink if this share of the lines has some there.
constexpr double commonInk = 0.08;

class RowCells
{
public:
    RowCells(const GreyImage &page, const Grid &grid, const GridRow &row)
        : m_page(page)
        , m_grid(grid)
        , m_row(row)
    {
        for (int column = 0; column < grid.columns; ++column) {
            const Box box = cell(column);
            m_backgrounds.push_back(box.isEmpty() ? 0 : commonestGrey(page, box));
            m_peaks.push_back(peak(column));
        }
    }

    GridLine line() const
    {
        GridLine line;
        line.picture = GreyImage(m_grid.box.width(), m_row.bottom - m_row.top, 255);
        for (int column = 0; column < m_grid.columns; ++column) {
            if (m_peaks[std::size_t(column)] < m_grid.leastInk) {
                continue;
            }
            line.columns.push_back(column);
            const double slope = 255.0 / level(column);
            const Box box = cell(column);
            for (int y = box.top; y < box.bottom; ++y) {
                std::uint8_t *to = line.picture.row(y - m_row.top);
                for (int x = box.left; x < box.right; ++x) {
                    const double ink = std::min(255.0, inkAt(x, y, column) * slope);
                    to[x - m_grid.box.left] = std::uint8_t(255 - std::lround(ink));
                }
            }
        }
        return line;
    }

private:
    Box cell(int column) const
    {
        return {std::clamp(int(std::lround(m_grid.columnLeft(column))), 0, m_page.width),
                std::max(0, m_row.top),
                std::clamp(int(std::lround(m_grid.columnLeft(column + 1))), 0, m_page.width),
                std::min(m_page.height, m_row.bottom)};
    }

    int inkAt(int x, int y, int column) const
    {
        return std::abs(m_page.at(x, y) - m_backgrounds[std::size_t(column)]);
    }

    int peak(int column) const
    {
        const double side = blankSide * m_grid.cellWidth;
        const Box box = cell(column);
        const int left = std::max(box.left, int(std::floor(m_grid.columnLeft(column) + side)));
        const int right = std::min(box.right, int(std::ceil(m_grid.columnLeft(column + 1) - side)));
        int most = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = left; x < right; ++x) {
                most = std::max(most, inkAt(x, y, column));
            }
        }
        return most;
    }

    /// The difference from the background that is black in the line.
    double level(int column) const
    {
        const int first = std::max(0, column - reach);
        const int last = std::min(m_grid.columns - 1, column + reach);
        int most = 0;
        for (int at = first; at <= last; ++at) {
            most = std::max(most, m_peaks[std::size_t(at)]);
        }
        return std::max(double(m_peaks[std::size_t(column)]), leastOfNeighbours * most);
    }

    const GreyImage &m_page;
    const Grid &m_grid;
    const GridRow &m_row;
    std::vector<std::uint8_t> m_backgrounds;
    std::vector<int> m_peaks;
};

} // namespace

std::vector<GridLine> gridLines(const GreyImage &page, const Grid &grid)
{
    std::vector<GridLine> lines;
    lines.reserve(grid.rows.size());
    for (const GridRow &row : grid.rows) {
        lines.push_back(RowCells(page, grid, row).line());
    }
    return lines;
}

GridRow inkRows(const std::vector<GridLine> &lines)
{
    std::vector<int> counts;
    for (const GridLine &line : lines) {
        counts.resize(std::max(counts.size(), std::size_t(line.picture.height)), 0);
        for (int y = 0; y < line.picture.height; ++y) {
            const std::uint8_t *row = line.picture.row(y);
            counts[std::size_t(y)] += std::any_of(row, row + line.picture.width,
                                                  [](std::uint8_t grey) { return grey < 128; });
        }
    }
    GridRow rows{0, int(counts.size())};
    const double least = commonInk * double(lines.size());
    while (rows.top + 1 < rows.bottom && counts[std::size_t(rows.top)] <= least) {
        ++rows.top;
    }
    while (rows.bottom - 1 > rows.top && counts[std::size_t(rows.bottom - 1)] <= least) {
        --rows.bottom;
    }
    return rows;
}

} // namespace recognition
