// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/OverlaySurface.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11OverlayKeyboard.h"
#include "Platform/X11/X11Overlays.h"
#include "Platform/X11/X11RootImage.h"

#include <memory>

/// Overlays in windows that no window manager touches.
///
/// Under a compositing manager the desktop shows through the panel; without one the panel is
/// given a picture of the screen. `orderOut` leaves a translucent panel mapped but fully
/// transparent, and deaf to the pointer, until the event being handled is over:
/// `X11ScreenRecording` needs it to find out when the compositing manager has shown the screen
/// without the overlay, and a window without anything in it cannot be seen fading out.
class X11OverlaySurface : public OverlaySurface
{
public:
    X11OverlaySurface(std::shared_ptr<X11Connection> connection,
                      std::shared_ptr<X11Overlays> overlays,
                      std::shared_ptr<X11OverlayKeyboard> keyboard);

    std::optional<QPixmap> cover(QWidget &panel, const Screen &screen) override;
    void orderFront(QWidget &panel) override;
    void makeKey(QWidget &panel) override;
    void orderOut(QWidget &panel) override;

private:
    bool showsThrough() const;
    QImage pictureOf(const Screen &screen);

    std::shared_ptr<X11Connection> m_connection;
    std::shared_ptr<X11Overlays> m_overlays;
    std::shared_ptr<X11OverlayKeyboard> m_keyboard;
    X11RootImage m_rootImage;
};
