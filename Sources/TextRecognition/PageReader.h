// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "GreyImage.h"
#include "Languages.h"
#include "Workers.h"

#include <QList>
#include <QString>

#include <vector>

namespace recognition {

/// One reading of a line of the page.
struct LineReading
{
    QString text;
    /// From 0 to 1.
    double confidence = 0;
};

/// One line of the page's text.
struct PageLine
{
    /// In pixels of the page.
    Box box;
    /// Best first, at least one.
    QList<LineReading> readings;
    /// What read it, or its first piece.
    QString model;
};

/// Reads everything on `page`, in reading order, in whatever of `languages` it is written.
/// Blocks; runs on this thread and on `workers`, for the effort that this thread works for. When
/// its budget is spent, what was read by then is given; what is spent on finding the text counts
/// too.
std::vector<PageLine> readPage(const GreyImage &page, const Languages &languages,
                               EngineCache &engines, Workers &workers);

} // namespace recognition
