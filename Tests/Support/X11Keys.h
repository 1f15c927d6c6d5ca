// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"

#include <QList>

/// Server key codes of an evdev keyboard.
namespace X11KeyCode {
inline constexpr xcb_keycode_t escape = 9;
inline constexpr xcb_keycode_t q = 24;
inline constexpr xcb_keycode_t o = 32;
inline constexpr xcb_keycode_t control = 37;
inline constexpr xcb_keycode_t k = 45;
inline constexpr xcb_keycode_t shift = 50;
inline constexpr xcb_keycode_t alt = 64;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t super = 133;
} // namespace X11KeyCode

/// Another program on the X server, with a keyboard under its hands: what it presses are real key
/// events of the server, what its window gets is what an application in front gets.
class X11Keys
{
public:
    X11Keys();

    /// Gives this program's window the keyboard; window managers take it away as they start.
    void takeFocus();

    /// Presses the keys in their order, then releases them in the opposite one.
    void type(const QList<xcb_keycode_t> &keys);
    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);

    /// Whether this program gets the key with these modifiers of the core protocol; it is given
    /// back at once.
    bool canGrab(xcb_keycode_t key, quint16 modifiers);

    /// Grabs the key, until `ungrab`.
    bool grab(xcb_keycode_t key, quint16 modifiers);
    void ungrab(xcb_keycode_t key, quint16 modifiers);

    /// Takes the whole keyboard, as screen lockers and open menus do, until `ungrabKeyboard`.
    bool grabKeyboard();
    void ungrabKeyboard();

    /// The keys pressed in the focused window of this program since it was asked last.
    QList<xcb_keycode_t> pressesSeen();

    /// The modifiers and locks in effect.
    quint16 state();

private:
    void fake(quint8 type, xcb_keycode_t key);
    void sync();

    X11Connection m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};
