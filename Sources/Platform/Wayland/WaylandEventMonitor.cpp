// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandEventMonitor.h"

#include "Platform/Wayland/ActivationMonitor.h"

#include <limits>
#include <utility>

namespace {
constexpr CocoaPoint elsewhere{std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::max()};
}

std::unique_ptr<EventMonitor::Monitor>
WaylandEventMonitor::addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler)
{
    return std::make_unique<ActivationMonitor>(
        [handler = std::move(handler)] { handler(elsewhere); });
}

std::unique_ptr<EventMonitor::Monitor>
WaylandEventMonitor::addResignActiveObserver(std::function<void()> handler)
{
    return std::make_unique<ActivationMonitor>(std::move(handler));
}
