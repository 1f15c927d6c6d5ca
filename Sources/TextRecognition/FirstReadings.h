// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <QStringList>

#include <vector>

namespace recognition {

/// What is known of the models for a page's lines.
struct PageModels
{
    /// One per script.
    QStringList candidates;
    /// Those of other scripts than Latin.
    QStringList foreignCandidates;
    /// What most of the page is in.
    QString main;
    /// The language of Latin script that is on the page.
    QString latin;
    /// The model of another script that is on the page too, if there is one.
    QString foreign;
};

/// Below this confidence a line may be in another script than its model's.
double gateOf(Script script);

/// Reads each of `tasks` with the page's model, and with another one what that is not sure of.
void readFirst(std::vector<LineTask> &tasks, const PageModels &models, const Languages &languages,
               EngineCache &engines, Workers &workers);

} // namespace recognition
