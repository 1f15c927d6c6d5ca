// SPDX-License-Identifier: MIT
#include "Platform/X11/X11EventMonitor.h"

#include "Platform/X11/X11ActivityObserver.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11MouseDownMonitor.h"
#include "Platform/X11/X11OverlayKeyboard.h"

#include <utility>

X11EventMonitor::X11EventMonitor(const Screens &screens,
                                 std::shared_ptr<X11OverlayKeyboard> keyboard)
    : m_screens(screens)
    , m_keyboard(std::move(keyboard))
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
    // The window manager may have been late before there was anybody to notice it.
    xcb_connection_t *qt = qtXcbConnection();
    const bool isActive = qt && (isQtWindow(focusedWindow(qt)) || m_keyboard->takeBack());
    return std::make_unique<X11ActivityObserver>(
        isActive, [handler = std::move(handler), keyboard = m_keyboard] {
            if (!keyboard->takeBack()) {
                handler();
            }
        });
}
