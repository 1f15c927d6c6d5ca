// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/Wayland/WindowActivation.h"

/// Popups are ordinary windows, which a Wayland compositor puts where it likes and tells nobody
/// where that is. They have the title bar and the resizing that the desktop gives any window.
class ToplevelPopupPlacement : public PopupPlacement
{
public:
    /// `screens` outlives the object.
    explicit ToplevelPopupPlacement(const Screens &screens);

    void makeFloating(QWidget &window) override;
    CocoaSize frameSize(const QWidget &window) const override;
    /// As if the window were at Qt's origin.
    CocoaRect frame(const QWidget &window) const override;
    bool tellsPlaces() const override { return false; }
    /// Does nothing.
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    const Screens &m_screens;
    WindowActivation m_activation;
};
