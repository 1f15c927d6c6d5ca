// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Qt/StatusItemArtwork.h"
#include "Platform/X11/X11Connection.h"

#include <QImage>
#include <QRect>
#include <QString>

#include <optional>

/// The window that is docked into a tray, and the picture in it.
///
/// In a tray that offers a visual with an alpha channel it is transparent around the picture; in
/// others it shows the tray's own background there. The picture is dark or light, whichever
/// stands out from what lies behind it, or has the colour that the tray asks for.
class XEmbedIcon
{
public:
    /// `x` outlives the icon. `visual` is the tray's choice, XCB_NONE if it has none.
    XEmbedIcon(const X11Connection &x, xcb_visualid_t visual);
    ~XEmbedIcon();
    XEmbedIcon(const XEmbedIcon &) = delete;
    XEmbedIcon &operator=(const XEmbedIcon &) = delete;

    xcb_window_t window() const { return m_window; }

    void setTitle(const QString &title);
    void setSize(QSize pixels);
    bool contains(QPoint position) const;
    void setForeground(std::optional<QColor> foreground) { m_foreground = foreground; }

    void draw(const StatusItemArtwork &artwork, const StatusItemImage &image);

private:
    /// What is seen where the window is: the pixels of the screen; null when off screen.
    QImage screenshot() const;
    /// A part of a drawable of the screen's usual depth; null where the server has none.
    QImage pixels(xcb_drawable_t drawable, QRect rect) const;
    /// The colour that stands out from what is `behind`, where `mask` is clear.
    QColor tint(const QImage &behind, const QImage &mask) const;
    void put(const QImage &picture, const QImage &behind);

    const X11Connection &m_x;
    xcb_connection_t *m_connection;
    xcb_window_t m_window = XCB_NONE;
    xcb_colormap_t m_colormap = XCB_NONE;
    xcb_gcontext_t m_gc = XCB_NONE;
    uint8_t m_depth = 0;
    QSize m_size;
    /// The picture drawn last, clear around its shape.
    QImage m_drawn;
    std::optional<QColor> m_foreground;
};
