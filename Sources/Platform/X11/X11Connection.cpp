// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Connection.h"

#include <QDeadlineTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstring>
#include <poll.h>

namespace {
/// The server gives every client a range of its own for the names of what it makes.
uint32_t clientOf(xcb_window_t window, const xcb_setup_t *setup)
{
    return window & ~setup->resource_id_mask;
}
} // namespace

X11Connection::X11Connection()
    : m_xcb(xcb_connect(nullptr, &m_screenNumber))
{
    if (xcb_connection_has_error(m_xcb)) {
        return;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_xcb));
    for (int skip = m_screenNumber; skip > 0 && screens.rem > 1; --skip) {
        xcb_screen_next(&screens);
    }
    m_screen = screens.rem > 0 ? screens.data : nullptr;
}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_xcb);
}

bool X11Connection::isUsable() const
{
    return m_screen && !xcb_connection_has_error(m_xcb);
}

xcb_atom_t X11Connection::atom(const char *name) const
{
    if (!isUsable()) {
        return XCB_ATOM_NONE;
    }
    xcb_atom_t &known = m_atoms[name];
    if (known == XCB_ATOM_NONE) {
        const auto cookie =
            xcb_intern_atom(m_xcb, false, static_cast<uint16_t>(std::strlen(name)), name);
        const XcbReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_xcb, cookie, nullptr));
        known = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }
    return known;
}

QList<quint32> X11Connection::property(xcb_window_t window, const char *name) const
{
    if (!isUsable()) {
        return {};
    }
    constexpr uint32_t mostItems = 1024;
    const auto cookie =
        xcb_get_property(m_xcb, false, window, atom(name), XCB_ATOM_ANY, 0, mostItems);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_xcb, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto *items = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {items, items + reply->value_len};
}

bool X11Connection::haveOneOwner(xcb_window_t one, xcb_window_t other) const
{
    const xcb_setup_t *setup = xcb_get_setup(m_xcb);
    return clientOf(one, setup) == clientOf(other, setup);
}

bool X11Connection::isComposited() const
{
    if (!isUsable()) {
        return false;
    }
    const QByteArray selection = "_NET_WM_CM_S" + QByteArray::number(m_screenNumber);
    const auto cookie = xcb_get_selection_owner(m_xcb, atom(selection.constData()));
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_xcb, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void X11Connection::sendToRoot(xcb_window_t window, const char *type,
                               const QList<quint32> &data) const
{
    if (!isUsable()) {
        return;
    }
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy_n(data.begin(), std::min<qsizetype>(data.size(), 5), message.data.data32);
    xcb_send_event(m_xcb, false, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_xcb);
}

bool X11Connection::awaitEvent(const std::function<bool(const xcb_generic_event_t &)> &isAwaited,
                               std::chrono::milliseconds limit) const
{
    const QDeadlineTimer deadline(limit);
    while (isUsable()) {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_xcb)}) {
            if (isAwaited(*event)) {
                return true;
            }
        }
        if (deadline.hasExpired()) {
            return false;
        }
        awaitInput(std::chrono::milliseconds(deadline.remainingTime()));
    }
    return false;
}

void X11Connection::awaitInput(std::chrono::milliseconds limit) const
{
    xcb_flush(m_xcb);
    pollfd input = {xcb_get_file_descriptor(m_xcb), POLLIN, 0};
    poll(&input, 1, static_cast<int>(std::max<qint64>(limit.count(), 0)));
}

xcb_connection_t *qtXcbConnection()
{
    if (!qGuiApp) {
        return nullptr;
    }
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

bool isQtWindow(xcb_window_t window)
{
    xcb_connection_t *qt = qtXcbConnection();
    if (!qt) {
        return false;
    }
    const xcb_setup_t *setup = xcb_get_setup(qt);
    return window != XCB_WINDOW_NONE && clientOf(window, setup) == setup->resource_id_base;
}

xcb_window_t focusedWindow(xcb_connection_t *connection)
{
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}
