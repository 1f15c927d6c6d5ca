// SPDX-License-Identifier: MIT
#include "Platform/X11/X11MouseDownMonitor.h"

#include <QPointer>

#include <xcb/xinput.h>

#include <utility>

namespace {
/// The left and the right button, as the server numbers them before any mapping.
constexpr uint32_t leftButton = 1;
constexpr uint32_t rightButton = 3;

/// How deep window managers put a program's window inside its frame: two levels are usual.
constexpr int deepestFrame = 4;

bool hasRawEvents(const X11Connection &connection)
{
    const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_input_id);
    if (!extension || !extension->present) {
        return false;
    }
    const XcbReply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection.xcb(), xcb_input_xi_query_version(connection.xcb(), 2, 1), nullptr));
    return version && (version->major_version > 2 ||
                       (version->major_version == 2 && version->minor_version >= 1));
}

bool selectRawPresses(const X11Connection &connection)
{
    struct
    {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } selection = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    const auto cookie =
        xcb_input_xi_select_events_checked(connection.xcb(), connection.root(), 1, &selection.head);
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection.xcb(), cookie));
    return !error;
}

/// Whether the window, or one inside it as in a window manager's frame, is this program's.
bool holdsQtWindow(const X11Connection &connection, xcb_window_t window, int depth)
{
    if (isQtWindow(window)) {
        return true;
    }
    if (depth == 0) {
        return false;
    }
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), window), nullptr));
    if (!tree) {
        return false;
    }
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (holdsQtWindow(connection, children[i], depth - 1)) {
            return true;
        }
    }
    return false;
}
} // namespace

X11MouseDownMonitor::X11MouseDownMonitor(std::function<void(QPoint)> handler)
    : m_handler(std::move(handler))
{
    if (!m_connection.isUsable() || !hasRawEvents(m_connection) ||
        !selectRawPresses(m_connection)) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.xcb()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11MouseDownMonitor::readEvents);
}

void X11MouseDownMonitor::readEvents()
{
    const QPointer<X11MouseDownMonitor> alive(this);
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())}) {
        if ((event->response_type & 0x7f) != XCB_GE_GENERIC) {
            continue;
        }
        const auto *press =
            reinterpret_cast<const xcb_input_raw_button_press_event_t *>(event.get());
        // Raw presses are the one thing asked for on this connection.
        if (press->event_type == XCB_INPUT_RAW_BUTTON_PRESS &&
            (press->detail == leftButton || press->detail == rightButton)) {
            pressed();
            if (!alive) {
                return;
            }
        }
    }
    if (!m_connection.isUsable()) {
        m_notifier->setEnabled(false);
    }
}

void X11MouseDownMonitor::pressed()
{
    const XcbReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr));
    if (!pointer || holdsQtWindow(m_connection, pointer->child, deepestFrame)) {
        return;
    }
    // A copy, because the handler may destroy this object.
    const auto handler = m_handler;
    handler({pointer->root_x, pointer->root_y});
}
