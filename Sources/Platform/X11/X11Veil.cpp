// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Veil.h"

#include "Platform/X11/X11Connection.h"

#include <utility>

namespace {
void copyArea(xcb_connection_t *qt, xcb_drawable_t from, xcb_drawable_t to, QSize size)
{
    const xcb_gcontext_t context = xcb_generate_id(qt);
    // Without it the server would send an event for every copy.
    const uint32_t noExposures = 0;
    xcb_create_gc(qt, context, to, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    xcb_copy_area(qt, from, to, context, 0, 0, 0, 0, static_cast<uint16_t>(size.width()),
                  static_cast<uint16_t>(size.height()));
    xcb_free_gc(qt, context);
}
} // namespace

X11Veil::X11Veil(xcb_window_t window, QSize size)
    : m_window(window)
    , m_size(size)
    , m_content(xcb_generate_id(qtXcbConnection()))
{
    constexpr uint8_t alphaDepth = 32;
    xcb_connection_t *qt = qtXcbConnection();
    xcb_create_pixmap(qt, alphaDepth, m_content, m_window, static_cast<uint16_t>(size.width()),
                      static_cast<uint16_t>(size.height()));
    copyArea(qt, m_window, m_content, m_size);
    xcb_clear_area(qt, false, m_window, 0, 0, 0, 0);
    xcb_flush(qt);
}

X11Veil::X11Veil(X11Veil &&other) noexcept
    : m_window(other.m_window)
    , m_size(other.m_size)
    , m_content(std::exchange(other.m_content, XCB_NONE))
{
}

X11Veil::~X11Veil()
{
    if (m_content == XCB_NONE) {
        return;
    }
    xcb_connection_t *qt = qtXcbConnection();
    copyArea(qt, m_content, m_window, m_size);
    xcb_free_pixmap(qt, m_content);
    xcb_flush(qt);
}
