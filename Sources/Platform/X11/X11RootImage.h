// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <QImage>
#include <QRect>

#include <xcb/shm.h>

/// Reads what the root window shows, everything on top of it included. Main thread only.
///
/// Goes through memory shared with the server where that is possible, else over the connection.
/// Knows the true colour formats of depth 16, 24, 30 and 32 in the machine's own byte order.
class X11RootImage
{
public:
    explicit X11RootImage(const X11Connection &connection);
    ~X11RootImage();
    X11RootImage(const X11RootImage &) = delete;
    X11RootImage &operator=(const X11RootImage &) = delete;

    /// The whole root window: pixels, origin top-left, y down. Empty without a server.
    QRect bounds() const;

    /// The pixels of `rect` (in the root window's pixels), opaque, 8 bits a colour. Null where
    /// `rect` is not wholly within `bounds` or the server refused. Throws std::bad_alloc where
    /// there is no memory for them.
    QImage read(const QRect &rect);

private:
    QImage readShared(const QRect &rect, QImage::Format format, int bytesPerLine);
    QImage readPlain(const QRect &rect, QImage::Format format, int bytesPerLine);
    bool reserve(std::size_t bytes);
    void release();

    const X11Connection &m_connection;
    bool m_canShare = false;
    xcb_shm_seg_t m_segment = XCB_NONE;
    uchar *m_memory = nullptr;
    std::size_t m_size = 0;
};
