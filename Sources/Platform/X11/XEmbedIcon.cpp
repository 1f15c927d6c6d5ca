// SPDX-License-Identifier: MIT
#include "Platform/X11/XEmbedIcon.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace {

/// XEMBED's protocol version, and its flag that asks to be mapped once embedded.
constexpr std::array<uint32_t, 2> xembedInfo = {0, 1};

/// What a tray gives an icon that asks for nothing may be a single pixel.
constexpr uint32_t smallestExtent = 16;

/// Of the screen's visuals, the one with `id` and its depth.
uint8_t depthOf(const xcb_screen_t *screen, xcb_visualid_t id)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == id) {
                return depths.data->depth;
            }
        }
    }
    return 0;
}

} // namespace

XEmbedIcon::XEmbedIcon(const X11Connection &x, xcb_visualid_t visual)
    : m_x(x)
    , m_connection(x.xcb())
    , m_window(xcb_generate_id(x.xcb()))
{
    xcb_connection_t *connection = m_connection;
    const xcb_screen_t *screen = x.screen();
    m_depth = depthOf(screen, visual);
    uint32_t mask = XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK;
    const uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                            XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                            XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    // Override-redirect: should the tray crash, the server gives the window back to the root,
    // and a window manager would show it as an application's.
    std::array<uint32_t, 5> values{};
    if (m_depth == 32) {
        m_colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, m_colormap, screen->root, visual);
        mask |= XCB_CW_BACK_PIXEL | XCB_CW_COLORMAP;
        values = {0, 0, 1, events, m_colormap};
    } else {
        visual = screen->root_visual;
        m_depth = screen->root_depth;
        mask |= XCB_CW_BACK_PIXMAP;
        values = {XCB_BACK_PIXMAP_PARENT_RELATIVE, 0, 1, events, 0};
    }
    xcb_create_window(connection, m_depth, m_window, screen->root, 0, 0, smallestExtent,
                      smallestExtent, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask,
                      values.data());
    m_gc = xcb_generate_id(connection);
    xcb_create_gc(connection, m_gc, m_window, 0, nullptr);

    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_window, m_x.atom("_XEMBED_INFO"),
                        m_x.atom("_XEMBED_INFO"), 32, xembedInfo.size(), xembedInfo.data());
    // WM_SIZE_HINTS: flags (PMinSize), four unused, the least width and height, nine unused.
    std::array<uint32_t, 18> sizeHints{};
    sizeHints[0] = 1U << 4U;
    sizeHints[5] = sizeHints[6] = smallestExtent;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, sizeHints.size(), sizeHints.data());
    constexpr char windowClass[] = "vellora\0Vellora";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, sizeof windowClass, windowClass);
}

XEmbedIcon::~XEmbedIcon()
{
    xcb_free_gc(m_connection, m_gc);
    xcb_destroy_window(m_connection, m_window);
    if (m_colormap != XCB_NONE) {
        xcb_free_colormap(m_connection, m_colormap);
    }
}

void XEmbedIcon::setTitle(const QString &title)
{
    const QByteArray text = title.toUtf8();
    const xcb_atom_t utf8 = m_x.atom("UTF8_STRING");
    for (const xcb_atom_t property : {m_x.atom("_NET_WM_NAME"), xcb_atom_t(XCB_ATOM_WM_NAME)}) {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, utf8, 8,
                            static_cast<uint32_t>(text.size()), text.constData());
    }
}

void XEmbedIcon::setSize(QSize pixels)
{
    m_size = pixels;
}

bool XEmbedIcon::contains(QPoint position) const
{
    return QRect(QPoint(0, 0), m_size).contains(position);
}

QImage XEmbedIcon::pixels(xcb_drawable_t drawable, QRect rect) const
{
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                      static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
                      static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()),
                      ~0U),
        nullptr));
    const auto pixelBytes = static_cast<qsizetype>(rect.width()) * rect.height() * 4;
    if (!reply || reply->depth != 24 || xcb_get_image_data_length(reply.get()) < pixelBytes) {
        return {};
    }
    return QImage(xcb_get_image_data(reply.get()), rect.width(), rect.height(),
                  QImage::Format_RGB32)
        .copy();
}

QImage XEmbedIcon::screenshot() const
{
    const XcbReply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
        m_connection, xcb_translate_coordinates(m_connection, m_window, m_x.root(), 0, 0),
        nullptr));
    if (!place) {
        return {};
    }
    const QRect wanted(QPoint(place->dst_x, place->dst_y), m_size);
    const QRect seen =
        wanted & QRect(0, 0, m_x.screen()->width_in_pixels, m_x.screen()->height_in_pixels);
    if (seen.isEmpty()) {
        return {};
    }
    const QImage part = pixels(m_x.root(), seen);
    if (part.isNull()) {
        return {};
    }
    QImage whole(m_size, QImage::Format_RGB32);
    whole.fill(Qt::black);
    QPainter(&whole).drawImage(seen.topLeft() - wanted.topLeft(), part);
    return whole;
}

QColor XEmbedIcon::tint(const QImage &behind, const QImage &mask) const
{
    if (m_foreground) {
        return *m_foreground;
    }
    // Only where the picture and the one before it are clear: either may be on the screen.
    const bool hasEarlier = m_drawn.size() == behind.size();
    qint64 luminance = 0;
    qint64 count = 0;
    for (int y = 0; y < behind.height(); ++y) {
        for (int x = 0; x < behind.width(); ++x) {
            const bool isClear =
                qAlpha(mask.pixel(x, y)) == 0 && (!hasEarlier || qAlpha(m_drawn.pixel(x, y)) == 0);
            if (isClear) {
                luminance += qGray(behind.pixel(x, y));
                ++count;
            }
        }
    }
    const bool isLight = count > 0 && luminance / count > 127;
    // As panels draw their own symbols on light and dark.
    return isLight ? QColor(0x2e, 0x34, 0x36) : QColor(0xf2, 0xf2, 0xf2);
}

void XEmbedIcon::draw(const StatusItemArtwork &artwork, const StatusItemImage &image)
{
    if (m_size.isEmpty()) {
        return;
    }
    const int extent = std::min(m_size.width(), m_size.height());
    const auto placed = [&](const QImage &square) {
        QImage picture(m_size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter(&picture).drawImage((m_size.width() - extent) / 2, (m_size.height() - extent) / 2,
                                     square);
        return picture;
    };
    xcb_clear_area(m_connection, 0, m_window, 0, 0, 0, 0);
    // The cleared window holds an opaque tray's background. The screen would not do: a compositor
    // shows there what was before the tray grew for the icon, until it has painted.
    const QImage behind =
        m_depth == 32 ? screenshot() : pixels(m_window, QRect(QPoint(0, 0), m_size));
    if (behind.isNull() && m_depth != 32) {
        return; // not on screen yet; an expose event follows
    }
    const QImage mask = placed(artwork.render(image, extent, Qt::black));
    m_drawn = placed(artwork.render(image, extent, tint(behind, mask)));
    put(m_drawn, behind);
}

void XEmbedIcon::put(const QImage &picture, const QImage &behind)
{
    QImage shown = picture;
    if (m_depth != 32) {
        shown = behind;
        QPainter(&shown).drawImage(0, 0, picture);
    }
    xcb_put_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_gc,
                  static_cast<uint16_t>(m_size.width()), static_cast<uint16_t>(m_size.height()), 0,
                  0, 0, m_depth, static_cast<uint32_t>(shown.sizeInBytes()), shown.constBits());
    xcb_flush(m_connection);
}
