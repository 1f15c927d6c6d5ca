// SPDX-License-Identifier: MIT
#include "Platform/Screens.h"

#include <algorithm>
#include <limits>

namespace {
double distance(double value, double low, double high)
{
    return std::max({low - value, value - high, 0.0});
}

/// The screen whose rectangle, as `rectOf` gives it, holds the point or is nearest to it.
template <typename RectOf>
std::optional<Screen> nearest(const QList<Screen> &screens, double x, double y, RectOf rectOf)
{
    std::optional<Screen> best;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (const Screen &screen : screens) {
        const QRectF rect = rectOf(screen);
        // The right and lower edges belong to the neighbour.
        const bool inside =
            x >= rect.left() && x < rect.right() && y >= rect.top() && y < rect.bottom();
        const double away = inside ? -1
                                   : distance(x, rect.left(), rect.right()) +
                                         distance(y, rect.top(), rect.bottom());
        if (away < bestDistance) {
            best = screen;
            bestDistance = away;
        }
    }
    return best;
}

QRectF cocoaAsQRect(const Screen &screen)
{
    return {screen.frame.origin.x, screen.frame.origin.y, screen.frame.size.width,
            screen.frame.size.height};
}
} // namespace

QPointF Screens::toQt(CocoaPoint point) const
{
    const auto screen = nearest(screens(), point.x, point.y, cocoaAsQRect);
    if (!screen) {
        return {point.x, -point.y};
    }
    return {screen->geometry.x() + (point.x - screen->frame.minX()),
            screen->geometry.y() + (screen->frame.maxY() - point.y)};
}

CocoaPoint Screens::fromQt(QPointF point) const
{
    const auto screen = nearest(screens(), point.x(), point.y(),
                                [](const Screen &each) { return QRectF(each.geometry); });
    if (!screen) {
        return {point.x(), -point.y()};
    }
    return {screen->frame.minX() + (point.x() - screen->geometry.x()),
            screen->frame.maxY() - (point.y() - screen->geometry.y())};
}

CocoaPoint Screens::fromPixels(QPointF point) const
{
    const auto screen = nearest(screens(), point.x(), point.y(),
                                [](const Screen &each) { return QRectF(each.pixelGeometry); });
    if (!screen) {
        return {point.x(), -point.y()};
    }
    const QSizeF scale = screen->scale();
    return {screen->frame.minX() + (point.x() - screen->pixelGeometry.x()) / scale.width(),
            screen->frame.maxY() - (point.y() - screen->pixelGeometry.y()) / scale.height()};
}

QPointF Screens::toPixels(CocoaPoint point) const
{
    const auto screen = nearest(screens(), point.x, point.y, cocoaAsQRect);
    if (!screen) {
        return {point.x, -point.y};
    }
    const QSizeF scale = screen->scale();
    return {screen->pixelGeometry.x() + (point.x - screen->frame.minX()) * scale.width(),
            screen->pixelGeometry.y() + (screen->frame.maxY() - point.y) * scale.height()};
}

CocoaRect Screens::fromQt(const QRectF &rect) const
{
    const CocoaPoint topLeft = fromQt(rect.topLeft());
    return {{topLeft.x, topLeft.y - rect.height()}, {rect.width(), rect.height()}};
}
