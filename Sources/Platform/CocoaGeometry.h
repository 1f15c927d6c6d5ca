// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Geometry in global Cocoa screen coordinates: points, origin at the bottom-left corner of the
/// primary screen, x to the right, y upwards. Types of their own, so that such a value is never
/// taken for one of Qt's, whose y grows downwards; `Screens` converts between the two.

struct CocoaPoint
{
    double x = 0;
    double y = 0;

    bool operator==(const CocoaPoint &) const = default;
};

struct CocoaSize
{
    double width = 0;
    double height = 0;

    bool operator==(const CocoaSize &) const = default;
};

/// `origin` is the lower-left corner; width and height are not negative.
struct CocoaRect
{
    CocoaPoint origin;
    CocoaSize size;

    double minX() const { return origin.x; }
    double midX() const { return origin.x + size.width / 2; }
    double maxX() const { return origin.x + size.width; }
    double minY() const { return origin.y; }
    double midY() const { return origin.y + size.height / 2; }
    double maxY() const { return origin.y + size.height; }

    /// The left and the lower edge belong to the rectangle, the right and the upper one do not.
    bool contains(CocoaPoint point) const;
    /// Whether `other` lies wholly inside, edges included.
    bool contains(const CocoaRect &other) const;
    /// A rectangle without width or height where the two do not overlap.
    CocoaRect intersection(const CocoaRect &other) const;

    bool operator==(const CocoaRect &) const = default;
};

/// The text form of sizes and rectangles in the user defaults: "{360, 240}" and
/// "{{10, 20}, {380, 420}}". Reading takes the numbers in their order and never fails: text
/// without enough finite numbers gives zeros.
QString stringFromSize(CocoaSize size);
CocoaSize sizeFromString(const QString &text);
QString stringFromRect(const CocoaRect &rect);
CocoaRect rectFromString(const QString &text);
