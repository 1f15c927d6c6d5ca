// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"
#include "Platform/Screens.h"

#include <functional>

class QWidget;

/// Puts a titled window at an exact place. Main thread only.
class PopupPlacement
{
public:
    /// Where the lower-left corner of a frame of this size goes, in global Cocoa coordinates.
    using Origin = std::function<CocoaPoint(CocoaSize)>;

    virtual ~PopupPlacement() = default;

    /// Makes `window`, not shown yet, float above other windows without a taskbar entry.
    virtual void makeFloating(QWidget &window) = 0;

    /// The part of `screen` that no panel takes, in global Cocoa coordinates.
    virtual CocoaRect visibleFrame(const Screen &screen) const { return screen.visibleFrame; }

    /// The size of the window's frame, title bar and borders included, as it will be or is on
    /// screen, in points. Its client area alone where the desktop does not tell.
    virtual CocoaSize frameSize(const QWidget &window) const = 0;

    /// Where the window's frame is, in global Cocoa coordinates.
    virtual CocoaRect frame(const QWidget &window) const = 0;

    /// Whether `frame` tells a place that a desktop has told, or was told.
    virtual bool tellsPlaces() const { return true; }

    /// Puts the lower-left corner of the window's frame at `origin`, shown or not.
    virtual void setFrameOrigin(QWidget &window, CocoaPoint origin) = 0;

    /// Puts the window's frame where `origin` says, which outlives the window. Where the desktop
    /// tells the size of frames only of windows on the screen, it is asked again then.
    virtual void place(QWidget &window, const Origin &origin);

    /// Gives the window a frame of this size and place, shown or not.
    virtual void setFrame(QWidget &window, const CocoaRect &frame);

    /// Shows `window` in front and makes it the active window, also where it is shown already but
    /// covered or minimised; there it stays at its place.
    virtual void makeKeyAndOrderFront(QWidget &window) = 0;
};
