// SPDX-License-Identifier: MIT
#pragma once

#include <QScopedValueRollback>

#include <functional>

/// The status item's menu where the desktop's panel draws it. Main thread only.
///
/// A panel tells what was chosen while the menu is on the screen, and takes it off in its own time,
/// of whose end it tells nobody.
class PanelMenu
{
public:
    /// Does what an entry that was chosen is for.
    void carryOut(const std::function<void()> &entry)
    {
        const QScopedValueRollback choice(m_isLeaving, true);
        entry();
    }

    /// Whether an entry is being carried out, so that the menu may still be seen.
    bool isLeaving() const { return m_isLeaving; }

private:
    bool m_isLeaving = false;
};
