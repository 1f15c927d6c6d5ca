// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <xcb/xcb.h>

#include <optional>

/// The server's keyboard as it is set up now: a snapshot, read again when it changes.
class X11Keyboard
{
public:
    /// Reads the core keyboard. Without a usable XKB extension the snapshot is empty and finds
    /// nothing.
    explicit X11Keyboard(xcb_connection_t *connection);

    /// The server's number for the key of a virtual key code.
    std::optional<xcb_keycode_t> keycode(quint16 virtualKeyCode) const;

    /// The virtual key code of the server's key.
    std::optional<quint16> virtualKeyCode(quint32 keycode) const;

    /// The server's modifier bits for a set of `KeyFlags`; absent when the keyboard lacks one.
    std::optional<quint16> modifiers(quint64 flags) const;

    /// The combinations of the locks (Caps, Num and Scroll Lock, as far as the keyboard has
    /// them) under which a shortcut has to work, no lock first.
    QList<quint16> lockVariants() const;

    /// What the key gives without modifiers in the layout in use, in upper case.
    QString label(quint16 virtualKeyCode) const { return m_labels.value(virtualKeyCode); }

private:
    void readKeys(xcb_connection_t *connection);
    void readModifiers(xcb_connection_t *connection);

    QHash<quint16, xcb_keycode_t> m_keycodes;
    QHash<quint16, QString> m_labels;
    /// Modifier bits by role; 0 where the keyboard has no such modifier.
    quint16 m_command = 0;
    quint16 m_option = 0;
    quint16 m_numLock = 0;
    quint16 m_scrollLock = 0;
};
