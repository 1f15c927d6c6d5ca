// SPDX-License-Identifier: MIT
#include "Platform/X11/X11EventMonitor.h"

#include "Platform/X11/X11ActivityObserver.h"
#include "Platform/X11/X11MouseDownMonitor.h"

#include <utility>

X11EventMonitor::X11EventMonitor(const Screens &screens)
    : m_screens(screens)
{
}

std::unique_ptr<EventMonitor::Monitor>
X11EventMonitor::addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler)
{
    auto monitor = std::make_unique<X11MouseDownMonitor>(
        [handler = std::move(handler), &screens = m_screens](QPoint pixels) {
            handler(screens.fromPixels(pixels));
        });
    return monitor->isListening() ? std::move(monitor) : nullptr;
}

std::unique_ptr<EventMonitor::Monitor>
X11EventMonitor::addResignActiveObserver(std::function<void()> handler)
{
    return std::make_unique<X11ActivityObserver>(std::move(handler));
}
