// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/SystemLog.h"
#include "Platform/Wayland/WaylandKeyTap.h"

/// Shortcuts by the GlobalShortcuts portal, where the desktop asks the user, remembers the answer
/// and lets the user choose other keys.
class GlobalShortcutsKeyTap : public WaylandKeyTap
{
public:
    /// `log` outlives the object and its taps.
    explicit GlobalShortcutsKeyTap(SystemLog &log);

    /// Whether there is such a portal, with a desktop behind it. Starts it where need be.
    static bool isOffered();

    /// The tap hears nothing until the user has agreed, and ends when the user does not.
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;

private:
    SystemLog &m_log;
};
