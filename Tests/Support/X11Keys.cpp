// SPDX-License-Identifier: MIT
#include "Support/X11Keys.h"

#include <xcb/xtest.h>

#include <algorithm>

X11Keys::X11Keys()
{
    if (!m_connection.isUsable()) {
        return;
    }
    xcb_connection_t *xcb = m_connection.xcb();
    m_window = xcb_generate_id(xcb);
    // No business of a window manager's, so that the focus is ours to set.
    const quint32 values[]{1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 40, 40, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(xcb, m_window);
    m_connection.awaitEvent(
        [](const xcb_generic_event_t &event) {
            return (event.response_type & 0x7f) == XCB_MAP_NOTIFY;
        },
        std::chrono::seconds(5));
    takeFocus();
}

void X11Keys::takeFocus()
{
    xcb_set_input_focus(m_connection.xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, m_window,
                        XCB_CURRENT_TIME);
    sync();
}

void X11Keys::type(const QList<xcb_keycode_t> &keys)
{
    for (const xcb_keycode_t key : keys) {
        press(key);
    }
    std::for_each(keys.rbegin(), keys.rend(), [this](xcb_keycode_t key) { release(key); });
}

void X11Keys::press(xcb_keycode_t key)
{
    fake(XCB_KEY_PRESS, key);
}

void X11Keys::release(xcb_keycode_t key)
{
    fake(XCB_KEY_RELEASE, key);
}

void X11Keys::fake(quint8 type, xcb_keycode_t key)
{
    xcb_test_fake_input(m_connection.xcb(), type, key, XCB_CURRENT_TIME, m_connection.root(), 0, 0,
                        0);
    sync();
}

bool X11Keys::canGrab(xcb_keycode_t key, quint16 modifiers)
{
    const bool granted = grab(key, modifiers);
    if (granted) {
        ungrab(key, modifiers);
    }
    return granted;
}

bool X11Keys::grab(xcb_keycode_t key, quint16 modifiers)
{
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(
        m_connection.xcb(),
        xcb_grab_key_checked(m_connection.xcb(), 0, m_connection.root(), modifiers, key,
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return !error;
}

void X11Keys::ungrab(xcb_keycode_t key, quint16 modifiers)
{
    xcb_ungrab_key(m_connection.xcb(), key, m_connection.root(), modifiers);
    sync();
}

bool X11Keys::grabKeyboard()
{
    const XcbReply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(m_connection.xcb(),
                                xcb_grab_keyboard(m_connection.xcb(), 1, m_window, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11Keys::ungrabKeyboard()
{
    xcb_ungrab_keyboard(m_connection.xcb(), XCB_CURRENT_TIME);
    sync();
}

QList<xcb_keycode_t> X11Keys::pressesSeen()
{
    sync();
    QList<xcb_keycode_t> keys;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())}) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            keys << reinterpret_cast<const xcb_key_press_event_t &>(*event).detail;
        }
    }
    return keys;
}

quint16 X11Keys::state()
{
    const XcbReply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr));
    return reply ? reply->mask : 0;
}

void X11Keys::sync()
{
    // A round trip: the server has done what was asked of it.
    const XcbReply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
}
