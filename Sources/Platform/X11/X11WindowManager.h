// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <QMargins>
#include <QRect>

#include <optional>

/// What is asked of and told to the window manager, about windows of ours. Pixels of the root
/// window throughout. Main thread only.
class X11WindowManager
{
public:
    explicit X11WindowManager(const X11Connection &connection);

    /// Whether it names that message or property among what it supports; false without one.
    bool supports(const char *name) const;

    /// The widths of the frame that it puts or will put around the window, shown or not. None
    /// where no window manager runs or it does not answer within 300 ms. The answer is kept for as
    /// long as that window manager runs.
    QMargins frameExtents(xcb_window_t window);

    /// The shown window inside its frame, where it is now.
    QRect clientGeometry(xcb_window_t window) const;

    /// Puts the upper left corner of the window inside its frame there, shown or not.
    void moveClient(xcb_window_t window, QPoint topLeft);

    /// Keeps a window that is not shown yet out of taskbars and pagers.
    void skipTaskbar(xcb_window_t window);

    /// Raises the window, shown before, and gives it the keyboard, whatever the window manager
    /// thinks of programs that do so without being asked.
    void activate(xcb_window_t window);

    /// The server's time now, in its milliseconds; blocks for one answer of the server.
    xcb_timestamp_t serverTime(xcb_window_t window);

private:
    xcb_window_t supportingWindow() const;
    std::optional<QMargins> knownExtents(xcb_window_t window) const;
    std::optional<QMargins> requestedExtents(xcb_window_t window);
    std::optional<QMargins> probedExtents();

    const X11Connection &m_connection;
    /// The window manager that gave the last answer, and the answer, for a window not shown yet.
    xcb_window_t m_answeredBy = XCB_WINDOW_NONE;
    QMargins m_answer;
};
