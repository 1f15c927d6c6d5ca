// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <xcb/xcb.h>

/// Makes a translucent window of ours fully transparent while it exists, without Qt's knowledge;
/// afterwards the window shows again what it showed. Qt must not paint in between.
class X11Veil
{
public:
    /// `size` is that of the window in pixels.
    X11Veil(xcb_window_t window, QSize size);
    ~X11Veil();
    X11Veil(X11Veil &&other) noexcept;
    X11Veil(const X11Veil &) = delete;
    X11Veil &operator=(const X11Veil &) = delete;

private:
    xcb_window_t m_window;
    QSize m_size;
    xcb_pixmap_t m_content;
};
