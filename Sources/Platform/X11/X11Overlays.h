// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QImage>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <xcb/xcb.h>

#include <vector>

/// One panel that covers a screen.
struct X11Overlay
{
    QPointer<QWidget> panel;
    /// Its native window.
    xcb_window_t window = XCB_WINDOW_NONE;
    /// The screen that it covers, in the root window's pixels.
    QRect pixels;
    /// What that screen showed before it was covered, which all panels on it share, with the
    /// screen's pixels per point; null where the desktop shows through.
    QImage picture;
    /// Whether it was ordered out in the event being handled. It may still be mapped, without
    /// anything to be seen.
    bool isRetired = false;
};

/// The panels that cover screens now or did until the event being handled; what the overlay
/// surface and the screen recording have to know of each other. Main thread only.
class X11Overlays
{
public:
    /// Panels are forgotten by themselves when they are destroyed.
    void add(QWidget &panel, const QRect &pixels, const QImage &picture);
    void remove(const QWidget &panel);
    /// Valid until the next call; null where the panel covers nothing.
    X11Overlay *find(const QWidget &panel);

    /// Those that share a pixel with `pixels`, oldest first.
    std::vector<X11Overlay> on(const QRect &pixels);

    /// What the desktop itself showed on a screen that a live panel covers opaquely: the picture
    /// that panel was given; null where there is none.
    QImage livePicture(const QRect &screenPixels);

    /// The live panel that was added last; null when there is none. Valid until the
    /// next call.
    X11Overlay *lastLive();

    /// A panel is being taken off the screen.
    void unsettle();
    /// Whether the last panel was taken off long enough ago for what was beneath to be seen.
    bool isSettled() const { return m_settling.hasExpired(); }

private:
    void dropDestroyed();

    std::vector<X11Overlay> m_overlays;
    QDeadlineTimer m_settling;
};
