// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"

#include <functional>
#include <memory>

/// Tells what happens outside our own windows. Main thread only.
class EventMonitor
{
public:
    /// A running observation; destroying it ends it. Handlers may destroy their own monitor.
    class Monitor
    {
    public:
        virtual ~Monitor() = default;
    };

    virtual ~EventMonitor() = default;

    /// Calls `handler` for every press of the left or right mouse button in another application,
    /// with the place of the pointer. Null when the desktop does not tell.
    virtual std::unique_ptr<Monitor>
    addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler) = 0;

    /// Calls `handler` when our application stops being the active one, the one that gets keys.
    virtual std::unique_ptr<Monitor> addResignActiveObserver(std::function<void()> handler) = 0;
};
