// SPDX-License-Identifier: MIT
#pragma once

#include "LineTask.h"
#include "Workers.h"

#include <QString>

#include <functional>
#include <map>
#include <vector>

namespace recognition {

/// Lines to be read together, of about one length, with one model.
struct LineGroup
{
    QString model;
    std::vector<LineTask *> tasks;
};

/// A page's lines in groups that are read together.
class LineGroups
{
public:
    /// `lines`: by model, longest first. `most` in one group; fewer if threads would be left
    /// without work, or the group took too much memory.
    LineGroups(const std::map<QString, std::vector<LineTask *>> &lines, std::size_t most,
               const Workers &workers);

    const std::vector<LineGroup> &groups() const { return m_groups; }
    /// Calls `work` for each on several threads; returns when all is done.
    void forEach(const std::function<void(const LineGroup &)> &work) const;

private:
    const Workers &m_workers;
    std::vector<LineGroup> m_groups;
};

} // namespace recognition
