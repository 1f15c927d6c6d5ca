// SPDX-License-Identifier: MIT
#include "LineGroups.h"

#include <algorithm>

namespace recognition {

namespace {

/// The prepared pixels of a group's lines together, each of which the network keeps a kilobyte of.
constexpr int widest = 4000;

int widthOf(const LineGroup &group)
{
    int width = 0;
    for (const LineTask *task : group.tasks) {
        width += task->image().picture.width;
    }
    return width;
}

} // namespace

LineGroups::LineGroups(const std::map<QString, std::vector<LineTask *>> &lines, std::size_t most,
                       const Workers &workers)
    : m_workers(workers)
{
    std::size_t count = 0;
    for (const auto &[model, tasks] : lines) {
        count += tasks.size();
    }
    // Rather several small groups for each thread than one that all wait for.
    most = std::min(most, count / std::size_t(2 * workers.threads()) + 1);
    for (const auto &[model, tasks] : lines) {
        int width = 0;
        bool isFirst = true;
        for (LineTask *task : tasks) {
            width += task->image().picture.width;
            if (isFirst || m_groups.back().tasks.size() == most || width > widest) {
                m_groups.push_back({model, {}});
                width = task->image().picture.width;
                isFirst = false;
            }
            m_groups.back().tasks.push_back(task);
        }
    }
    // The longest first, so that no thread is left with one at the end.
    std::stable_sort(m_groups.begin(), m_groups.end(), [](const LineGroup &a, const LineGroup &b) {
        return widthOf(a) > widthOf(b);
    });
}

void LineGroups::forEach(const std::function<void(const LineGroup &)> &work) const
{
    m_workers.forEach(m_groups.size(), [&](std::size_t i) { work(m_groups[i]); });
}

} // namespace recognition
