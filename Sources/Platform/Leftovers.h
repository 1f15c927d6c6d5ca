// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>
#include <vector>

/// What runs of the program that could not end by themselves (a crash, a kill) left in the desktop.
/// Each mechanism that can leave something adds how it takes that away. Main thread only.
class Leftovers
{
public:
    /// `remove` touches nothing that is not surely the program's own, and nothing at all where
    /// nothing was left.
    void add(std::function<void()> remove) { m_removals.push_back(std::move(remove)); }

    /// Takes away what is there. Only for the one run that has the program's name on the session
    /// bus, before it leaves anything itself.
    void remove() const
    {
        for (const auto &each : m_removals) {
            each();
        }
    }

private:
    std::vector<std::function<void()>> m_removals;
};
