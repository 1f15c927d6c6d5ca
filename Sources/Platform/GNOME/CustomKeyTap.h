// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/WaylandKeyTap.h"

/// Shortcuts by GNOME's settings daemon.
class CustomKeyTap : public WaylandKeyTap
{
public:
    /// Whether the daemon's settings are there, and the shell that grabs keys for it.
    static bool isUsable();

    /// The callback is never called: a press comes as the action "capture" over the session bus.
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
};
