// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/EventMonitor.h"
#include "Platform/Screens.h"

#include <memory>

class X11OverlayKeyboard;

/// Presses from XInput 2's raw events, which reach everybody whatever window they go to; activity
/// from where the server says the keyboard is.
class X11EventMonitor : public EventMonitor
{
public:
    /// `screens` outlives the object and its monitors.
    X11EventMonitor(const Screens &screens, std::shared_ptr<X11OverlayKeyboard> keyboard);

    /// Null where XInput is older than 2.1, which hides presses while another program, such as
    /// one with an open menu, has the pointer for itself.
    std::unique_ptr<Monitor>
    addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler) override;

    /// An application that has never had the keyboard does not stop being active, nor does one
    /// from which a late window manager took it.
    std::unique_ptr<Monitor> addResignActiveObserver(std::function<void()> handler) override;

private:
    const Screens &m_screens;
    std::shared_ptr<X11OverlayKeyboard> m_keyboard;
};
