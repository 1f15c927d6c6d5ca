// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Overlays.h"
#include "Platform/X11/X11RootImage.h"

#include <memory>
#include <vector>

/// Grabs from the root window. Every program on an X11 desktop may do that.
///
/// Points become pixels by the screen's own scale; an edge between two pixels takes the outer
/// one, so that nothing of what was asked for is missing. What an overlay covers comes from the
/// picture taken before it, or from the desktop once the compositing manager has shown it
/// without the overlay. That wait blocks, one or two frames as a rule, `longestWait` at most.
class X11ScreenRecording : public ScreenRecording
{
public:
    /// `screens` outlives the object.
    X11ScreenRecording(std::shared_ptr<X11Connection> connection,
                       std::shared_ptr<X11Overlays> overlays, const Screens &screens);

    bool preflightAccess() const override;
    bool requestAccess() override;
    QImage createImage(quint32 display, const QRectF &rect) override;

private:
    QImage readUncovered(const QRect &pixels, const std::vector<X11Overlay> &covering);
    QImage readPresented(const QRect &pixels, const X11Overlay &top, bool hasOthers);

    std::shared_ptr<X11Connection> m_connection;
    std::shared_ptr<X11Overlays> m_overlays;
    const Screens &m_screens;
    X11RootImage m_rootImage;
};
