// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/WaylandEventMonitor.h"

/// What sway tells besides the focus of our own windows: it leaves the keyboard to a layer that
/// has it, even when the user turns to another window.
class SwayEventMonitor : public WaylandEventMonitor
{
public:
    std::unique_ptr<Monitor> addResignActiveObserver(std::function<void()> handler) override;
};
