// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/WaylandKeyTap.h"

/// Shortcuts by kglobalaccel, which swallows a press that it tells of.
class GlobalAccelKeyTap : public WaylandKeyTap
{
public:
    /// Whether the compositor itself serves it: started by a program on another desktop it would
    /// hear of no key.
    static bool isUsable();

    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
};
