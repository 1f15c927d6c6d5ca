// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Grids.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <QString>

#include <vector>

namespace recognition {

/// A row of a grid as it is read.
struct GridText
{
    GridRow row;
    /// From column nought, one blank per empty cell, none at the end.
    QString text;
    /// From 0 to 1.
    double confidence = 0;
    /// Whether a word may be in another script or language than the model's.
    bool isDoubtful = false;
    /// Whether it knows hardly any of it.
    bool isUnread = false;
};

/// A block of fixed pitch as it is read.
struct GridBlock
{
    Grid grid;
    std::vector<GridText> rows;
    /// What read it.
    QString model;

    /// Whether the row holds the middle of `box`.
    static bool holds(const GridRow &row, const Box &box)
    {
        return box.centreY2() >= 2 * row.top && box.centreY2() < 2 * row.bottom;
    }
    /// Whether the block holds the middle of `box`.
    bool holds(const Box &box) const
    {
        return box.centreX2() >= 2 * grid.box.left && box.centreX2() < 2 * grid.box.right &&
               box.centreY2() >= 2 * grid.box.top && box.centreY2() < 2 * grid.box.bottom;
    }
    /// The row that holds the middle of `box`, or nothing.
    GridText *rowOf(const Box &box);
};

/// A row of a block is in other letters than those of a keyboard only if it is read this surely:
/// dashes are read as kana.
inline constexpr double surelyForeign = 0.8;

/// Whether `text` has letters that English has not.
bool hasForeignLetters(const QString &text);

/// The blocks of fixed pitch among `tasks`, a page's lines, longest first, read by the model that
/// their lines are read best with: that is where reading begins. Lines that are read are taken out
/// of `tasks`; those in doubtful rows stay.
std::vector<GridBlock> readGrids(const GreyImage &page, std::vector<LineTask> &tasks,
                                 const Languages &languages, EngineCache &engines,
                                 Workers &workers);

} // namespace recognition
