// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"

#include <QList>
#include <QObject>
#include <QRect>

#include <optional>

/// One screen, in the three coordinate spaces that the program meets.
struct Screen
{
    /// The whole screen, in global Cocoa coordinates.
    CocoaRect frame;
    /// `frame` without panels and docks.
    CocoaRect visibleFrame;
    /// Names the display to `ScreenRecording`; absent when the display cannot be named.
    std::optional<quint32> displayNumber;
    /// The whole screen in Qt's global coordinates: points, on some desktops pixels; origin
    /// top-left, y down.
    QRect geometry;
    /// The whole screen in the window system's pixels, origin top-left, y down.
    QRect pixelGeometry;

    /// Pixels per point, across and down.
    QSizeF scale() const
    {
        return {pixelGeometry.width() / frame.size.width,
                pixelGeometry.height() / frame.size.height};
    }

    bool operator==(const Screen &) const = default;
};

/// The attached screens, and the one home of the conversions between coordinate spaces.
/// Main thread only.
class Screens : public QObject
{
    Q_OBJECT

public:
    /// The screens in the system's order, the primary one first; empty when there is none.
    virtual QList<Screen> screens() const = 0;

    /// The screen that the user works on: of the focused window, else under the pointer.
    virtual std::optional<Screen> mainScreen() const = 0;

    /// The same place in Qt's global coordinates. A point off every screen is measured from the
    /// nearest one.
    QPointF toQt(CocoaPoint point) const;
    /// The same place in Cocoa coordinates, from Qt's global coordinates.
    CocoaPoint fromQt(QPointF point) const;
    /// The same place in Cocoa coordinates, from the window system's pixels.
    CocoaPoint fromPixels(QPointF point) const;
    /// The same place in the window system's pixels. A point off every screen is measured from the
    /// nearest one.
    QPointF toPixels(CocoaPoint point) const;
    /// A rectangle in Qt's global coordinates as a Cocoa rectangle of the same size.
    CocoaRect fromQt(const QRectF &rect) const;

Q_SIGNALS:
    /// A screen was added, removed, moved or resized, or another one is the primary screen.
    void changed();
};
