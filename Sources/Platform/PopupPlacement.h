// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"

class QWidget;

/// Puts a titled window at an exact place. Main thread only.
class PopupPlacement
{
public:
    virtual ~PopupPlacement() = default;

    /// Makes `window`, not shown yet, float above other windows without a taskbar entry.
    virtual void makeFloating(QWidget &window) = 0;

    /// The size of the window's frame, title bar and borders included, as it will be or is on
    /// screen, in points. Its client area alone where the desktop does not tell.
    virtual CocoaSize frameSize(const QWidget &window) const = 0;

    /// Where the window's frame is, in global Cocoa coordinates.
    virtual CocoaRect frame(const QWidget &window) const = 0;

    /// Puts the lower-left corner of the window's frame at `origin`, shown or not.
    virtual void setFrameOrigin(QWidget &window, CocoaPoint origin) = 0;

    /// Shows `window` in front and makes it the active window, also where it is shown already but
    /// covered or minimised; there it stays at its place.
    virtual void makeKeyAndOrderFront(QWidget &window) = 0;
};
