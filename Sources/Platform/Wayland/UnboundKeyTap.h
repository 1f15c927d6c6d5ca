// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/SystemLog.h"
#include "Platform/Wayland/WaylandKeyTap.h"

/// For a compositor that gives programs no keys of other windows: it says how the user can bind
/// one.
class UnboundKeyTap : public WaylandKeyTap
{
public:
    /// `log` outlives the object.
    explicit UnboundKeyTap(SystemLog &log);

    /// Always null; the log and the problem of the given keys name the command to bind.
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;

private:
    SystemLog &m_log;
};
