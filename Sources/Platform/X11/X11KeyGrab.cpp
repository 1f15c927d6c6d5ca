// SPDX-License-Identifier: MIT
#include "Platform/X11/X11KeyGrab.h"

#include "Platform/X11/X11Keyboard.h"

// The header names a field after a keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace {
/// The modifier bits of an event's state; pointer buttons and the layout's group are above them.
constexpr quint16 modifierBits = 0xff;
constexpr quint8 eventTypeBits = 0x7f;
} // namespace

X11KeyGrab::X11KeyGrab(KeyTap::Callback callback)
    : m_callback(std::move(callback))
{
    if (!m_connection.isUsable()) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.xcb()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11KeyGrab::readEvents);
}

X11KeyGrab::~X11KeyGrab()
{
    // Ungrabbed and not only disconnected: the server notices the end of a connection later than
    // it serves the next one, on which the same key may be grabbed.
    ungrab();
}

bool X11KeyGrab::setCombination(const KeyCombination &combination)
{
    m_combination = combination;
    if (!m_connection.isUsable()) {
        return false;
    }
    if (m_xkbEvent == 0) {
        followKeyboardChanges();
    }
    const bool grabbed = regrab();
    // The answers that were awaited may have brought events along, of which the socket does not
    // tell any more.
    QMetaObject::invokeMethod(this, &X11KeyGrab::readEvents, Qt::QueuedConnection);
    return grabbed;
}

void X11KeyGrab::followKeyboardChanges()
{
    xcb_connection_t *connection = m_connection.xcb();
    const XcbReply<xcb_xkb_use_extension_reply_t> extension(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr));
    if (!extension || !extension->supported) {
        return;
    }
    m_xkbEvent = xcb_get_extension_data(connection, &xcb_xkb_id)->first_event;
    // A client that uses XKB is not told by the core protocol's MappingNotify any more.
    constexpr quint16 events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr quint16 parts =
        XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                          nullptr);
}

std::optional<X11KeyGrab::Grab> X11KeyGrab::wanted() const
{
    const X11Keyboard keyboard(m_connection.xcb());
    const auto keycode = keyboard.keycode(m_combination.keyCode);
    const auto modifiers = keyboard.modifiers(m_combination.flags);
    if (!keycode || !modifiers) {
        return std::nullopt;
    }
    return Grab{*keycode, *modifiers, keyboard.lockVariants()};
}

bool X11KeyGrab::regrab()
{
    const auto next = wanted();
    if (next && next == m_grab) {
        return true;
    }
    ungrab();
    return next && grab(*next);
}

QList<xcb_window_t> X11KeyGrab::roots() const
{
    QList<xcb_window_t> windows;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.xcb())); screen.rem > 0;
         xcb_screen_next(&screen)) {
        windows << screen.data->root;
    }
    return windows;
}

bool X11KeyGrab::grab(const Grab &grab)
{
    m_grab = grab;
    QList<xcb_void_cookie_t> cookies;
    for (const xcb_window_t root : roots()) {
        for (const quint16 locks : grab.lockVariants) {
            // Asynchronous, so that the keyboard never waits for us.
            cookies << xcb_grab_key_checked(m_connection.xcb(), 0, root,
                                            static_cast<quint16>(grab.modifiers | locks),
                                            grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        }
    }
    bool granted = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection.xcb(), cookie));
        granted = granted && !error;
    }
    if (!granted) {
        ungrab();
    }
    return granted;
}

void X11KeyGrab::ungrab()
{
    if (!m_grab || !m_connection.isUsable()) {
        return;
    }
    xcb_void_cookie_t last{};
    for (const xcb_window_t root : roots()) {
        for (const quint16 locks : m_grab->lockVariants) {
            last = xcb_ungrab_key_checked(m_connection.xcb(), m_grab->keycode, root,
                                          static_cast<quint16>(m_grab->modifiers | locks));
        }
    }
    // What was refused cannot fail to be released, and awaiting the last awaits them all.
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection.xcb(), last));
    m_grab.reset();
}

void X11KeyGrab::readEvents()
{
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())}) {
        handle(*event);
    }
    if (!m_connection.isUsable()) {
        m_notifier.reset();
        return;
    }
    if (std::exchange(m_keyboardChanged, false)) {
        if (!regrab() && onEnd) {
            // Another program has what the keyboard's new layout makes of the combination.
            onEnd(End::Failed);
            return;
        }
        QMetaObject::invokeMethod(this, &X11KeyGrab::readEvents, Qt::QueuedConnection);
    }
}

void X11KeyGrab::handle(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & eventTypeBits;
    if (type == XCB_KEY_PRESS) {
        handlePress(reinterpret_cast<const xcb_key_press_event_t &>(event));
    } else if (m_xkbEvent != 0 && type == m_xkbEvent) {
        m_keyboardChanged = true;
    }
}

void X11KeyGrab::handlePress(const xcb_key_press_event_t &press)
{
    // The press has made the grab active: until the key is released the whole keyboard would be
    // ours. Given back at once, so that what the press starts gets the keys that follow; a
    // repeated press activates the grab again.
    xcb_ungrab_keyboard(m_connection.xcb(), XCB_CURRENT_TIME);
    xcb_flush(m_connection.xcb());
    // A press from before the combination was changed is none of it.
    if (m_grab && press.detail == m_grab->keycode &&
        m_grab->lockVariants.contains((press.state & modifierBits) & ~m_grab->modifiers) &&
        (press.state & m_grab->modifiers) == m_grab->modifiers) {
        m_callback(m_combination);
    }
}
