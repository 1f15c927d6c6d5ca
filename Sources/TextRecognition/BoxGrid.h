// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <cstddef>
#include <vector>

namespace recognition {

/// Boxes by the cells of a page that they touch, so that those near a place are found without
/// looking at all. Boxes have numbers, which their owner gives; what lies outside the page counts
/// as on its rim.
class BoxGrid
{
public:
    BoxGrid(int pageWidth, int pageHeight)
        : m_columns(std::max(0, pageWidth) / cellWidth + 1)
        , m_rows(std::max(0, pageHeight) / cellHeight + 1)
        , m_cells(std::size_t(m_columns) * std::size_t(m_rows))
    {
    }

    void add(std::size_t number, const Box &box)
    {
        const Cells cells = cellsTouchedBy(box);
        for (int y = cells.top; y <= cells.bottom; ++y) {
            for (int x = cells.left; x <= cells.right; ++x) {
                m_cells[indexOf(x, y)].push_back(number);
            }
        }
    }

    /// `box` is as it was when it was added.
    void remove(std::size_t number, const Box &box)
    {
        const Cells cells = cellsTouchedBy(box);
        for (int y = cells.top; y <= cells.bottom; ++y) {
            for (int x = cells.left; x <= cells.right; ++x) {
                std::erase(m_cells[indexOf(x, y)], number);
            }
        }
    }

    /// Calls `visit` with the numbers of all boxes that touch `area` and of some nearby, with those
    /// that lie in several cells several times, in no order.
    template <typename Visit>
    void forEachNear(const Box &area, Visit visit) const
    {
        const Cells cells = cellsTouchedBy(area);
        for (int y = cells.top; y <= cells.bottom; ++y) {
            for (int x = cells.left; x <= cells.right; ++x) {
                for (const std::size_t number : m_cells[indexOf(x, y)]) {
                    visit(number);
                }
            }
        }
    }

private:
    /// About the size of a short word: lines of text are long and low.
    static constexpr int cellWidth = 128;
    static constexpr int cellHeight = 32;

    /// All of them included.
    struct Cells
    {
        int left;
        int top;
        int right;
        int bottom;
    };

    Cells cellsTouchedBy(const Box &box) const
    {
        const auto column = [this](int x) {
            return std::clamp(x / cellWidth, 0, m_columns - 1);
        };
        const auto row = [this](int y) {
            return std::clamp(y / cellHeight, 0, m_rows - 1);
        };
        return {column(box.left), row(box.top), column(box.right), row(box.bottom)};
    }

    std::size_t indexOf(int column, int row) const
    {
        return std::size_t(row) * std::size_t(m_columns) + std::size_t(column);
    }

    int m_columns;
    int m_rows;
    std::vector<std::vector<std::size_t>> m_cells;
};

} // namespace recognition
