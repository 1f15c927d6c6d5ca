// SPDX-License-Identifier: MIT
#include "Platform/X11/X11ScreenRecording.h"

#include "Platform/X11/X11FrameMarker.h"
#include "Platform/X11/X11RootChange.h"
#include "Platform/X11/X11Veil.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {
/// When a compositing manager is given up on. The slowest one tried took 150 ms on a machine that
/// was four times overloaded; a picture that comes late is better than one with the dim in it.
constexpr std::chrono::milliseconds longestWait(2000);

std::optional<Screen> screenOf(const Screens &screens, quint32 display)
{
    const QList<Screen> all = screens.screens();
    const auto found = std::find_if(all.begin(), all.end(), [display](const Screen &screen) {
        return screen.displayNumber == display;
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

/// The smallest rectangle of whole pixels of the screen around `rect`, on the root window.
QRect pixelsAround(const QRectF &rect, const Screen &screen)
{
    const QSizeF scale = screen.scale();
    // Rounding errors of the scale must not add a row: 1/1000 of a pixel is none.
    constexpr double slack = 0.001;
    const QRectF scaled(rect.x() * scale.width(), rect.y() * scale.height(),
                        rect.width() * scale.width(), rect.height() * scale.height());
    const QRectF within =
        scaled & QRectF(0, 0, screen.pixelGeometry.width(), screen.pixelGeometry.height());
    if (within.isEmpty()) {
        return {};
    }
    const QPoint topLeft(static_cast<int>(std::floor(within.left() + slack)),
                         static_cast<int>(std::floor(within.top() + slack)));
    const QPoint bottomRight(static_cast<int>(std::ceil(within.right() - slack)) - 1,
                             static_cast<int>(std::ceil(within.bottom() - slack)) - 1);
    return QRect(topLeft, bottomRight).translated(screen.pixelGeometry.topLeft());
}
} // namespace

X11ScreenRecording::X11ScreenRecording(std::shared_ptr<X11Connection> connection,
                                       std::shared_ptr<X11Overlays> overlays,
                                       const Screens &screens)
    : m_connection(std::move(connection))
    , m_overlays(std::move(overlays))
    , m_screens(screens)
    , m_rootImage(*m_connection)
{
}

bool X11ScreenRecording::preflightAccess() const
{
    return m_connection->isUsable();
}

bool X11ScreenRecording::requestAccess()
{
    return preflightAccess();
}

QImage X11ScreenRecording::createImage(quint32 display, const QRectF &rect)
{
    const auto screen = screenOf(m_screens, display);
    if (!screen) {
        return {};
    }
    const QRect pixels = pixelsAround(rect, *screen) & m_rootImage.bounds();
    if (pixels.isEmpty()) {
        return {};
    }
    const std::vector<X11Overlay> covering = m_overlays->on(pixels);
    if (!covering.empty()) {
        return readUncovered(pixels, covering);
    }
    return m_overlays->isSettled()
               ? m_rootImage.read(pixels)
               : readSettled(*m_connection, m_rootImage, pixels, QDeadlineTimer(longestWait));
}

QImage X11ScreenRecording::readUncovered(const QRect &pixels,
                                         const std::vector<X11Overlay> &covering)
{
    const auto pictured =
        std::find_if(covering.begin(), covering.end(), [&](const X11Overlay &overlay) {
            return !overlay.picture.isNull() && overlay.pixels.contains(pixels);
        });
    if (pictured != covering.end()) {
        QImage part = pictured->picture.copy(pixels.translated(-pictured->pixels.topLeft()));
        part.setDevicePixelRatio(1);
        return part;
    }
    if (!m_connection->isComposited()) {
        return readSettled(*m_connection, m_rootImage, pixels, QDeadlineTimer(longestWait));
    }
    // Another selection may be going on, whose panels are in the way for the moment too.
    std::vector<X11Veil> veils;
    for (const X11Overlay &overlay : covering) {
        if (!overlay.isRetired) {
            veils.emplace_back(overlay.window, overlay.pixels.size());
        }
    }
    const auto retired = std::find_if(covering.begin(), covering.end(),
                                      [](const X11Overlay &overlay) { return overlay.isRetired; });
    return readPresented(pixels, retired == covering.end() ? covering.front() : *retired,
                         covering.size() > 1);
}

QImage X11ScreenRecording::readPresented(const QRect &pixels, const X11Overlay &top, bool hasOthers)
{
    const QDeadlineTimer deadline(longestWait);
    X11FrameMarker marker(*m_connection, m_rootImage, top.window, top.pixels, pixels);
    bool isPresented = marker.show(deadline) && (!hasOthers || marker.show(deadline));
    if (marker.place().intersects(pixels)) {
        marker.erase();
        isPresented = isPresented && marker.awaitGone(deadline);
        return isPresented
                   ? m_rootImage.read(pixels)
                   : readSettled(*m_connection, m_rootImage, pixels, QDeadlineTimer(longestWait));
    }
    QImage image =
        isPresented ? m_rootImage.read(pixels)
                    : readSettled(*m_connection, m_rootImage, pixels, QDeadlineTimer(longestWait));
    marker.erase();
    return image;
}
