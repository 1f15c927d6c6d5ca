// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11RootImage.h"

#include <QDeadlineTimer>
#include <QRect>

#include <vector>

/// Finds out when a compositing manager has shown what was drawn before.
///
/// A small block of random black and white pixels is drawn into a translucent window on top of
/// all others; once the root window shows it, it shows everything else that was drawn earlier into
/// that window, because compositing managers present in order. What was drawn earlier into other
/// windows is sure to be shown only once a second block is seen: the first may have come in the
/// middle of a frame, after those windows were painted. Main thread only.
class X11FrameMarker
{
public:
    /// `window` has depth 32 and covers `covered` (in the root window's pixels), of which `avoid`
    /// is kept clear where there is room beside it.
    X11FrameMarker(const X11Connection &connection, X11RootImage &rootImage, xcb_window_t window,
                   const QRect &covered, const QRect &avoid);

    /// The place of the block, in the root window's pixels.
    QRect place() const { return m_place; }

    /// Draws a block, another one each time, and blocks until it is seen; false once `deadline`
    /// has passed.
    bool show(QDeadlineTimer deadline);
    /// Takes the block away, without waiting.
    void erase();
    /// Blocks until the block is no longer seen; false once `deadline` has passed.
    bool awaitGone(QDeadlineTimer deadline);

private:
    void draw();
    std::vector<double> brightness();
    double likeness(const std::vector<double> &now) const;

    const X11Connection &m_connection;
    X11RootImage &m_rootImage;
    xcb_window_t m_window;
    QRect m_covered;
    QRect m_place;
    /// One for every pixel of the block, row by row: true for white.
    std::vector<bool> m_pattern;
    std::vector<double> m_before;
};
