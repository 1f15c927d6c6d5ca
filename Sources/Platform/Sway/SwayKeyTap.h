// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/WaylandKeyTap.h"

/// Listens to one combination at a time by a key binding of sway's.
///
/// Sway lets any program bind keys, so the process is always trusted. A combination that the
/// user's configuration file binds cannot be had: sway itself would give it to us silently.
class SwayKeyTap : public WaylandKeyTap
{
public:
    /// Whether there is a sway to ask.
    static bool isUsable();

    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
};
