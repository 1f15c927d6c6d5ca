// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/EventMonitor.h"

/// What the focus of our own windows tells; Wayland has nothing else.
///
/// A press in another program's window is told when that window gets the keyboard by it; so a
/// switch by key counts as a press too, and a press on a panel, which never gets the keyboard,
/// does not. The place of the pointer is not told either: a place is given that is on no screen.
class WaylandEventMonitor : public EventMonitor
{
public:
    std::unique_ptr<Monitor>
    addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler) override;
    std::unique_ptr<Monitor> addResignActiveObserver(std::function<void()> handler) override;
};
