// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"
#include "Platform/X11/X11Connection.h"

#include <QList>
#include <QObject>
#include <QSocketNotifier>

/// One combination, taken from the server by passive grabs on a connection of its own: whatever
/// becomes of the process, the server frees the key when the connection ends.
///
/// The grabs follow the keyboard: when it is plugged in, or its layout or modifiers are changed,
/// they are made anew for where the combination is then.
class X11KeyGrab : public QObject, public KeyTap::Tap
{
public:
    explicit X11KeyGrab(KeyTap::Callback callback);
    /// The key is free when this returns.
    ~X11KeyGrab() override;

    bool setCombination(const KeyCombination &combination) override;

private:
    /// What the server is asked to grab, in its own numbers.
    struct Grab
    {
        xcb_keycode_t keycode = 0;
        quint16 modifiers = 0;
        QList<quint16> lockVariants;

        bool operator==(const Grab &) const = default;
    };

    void followKeyboardChanges();
    std::optional<Grab> wanted() const;
    bool regrab();
    bool grab(const Grab &grab);
    void ungrab();
    QList<xcb_window_t> roots() const;
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    void handlePress(const xcb_key_press_event_t &press);

    X11Connection m_connection;
    KeyTap::Callback m_callback;
    KeyCombination m_combination;
    /// What is grabbed now.
    std::optional<Grab> m_grab;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// The number of the XKB extension's events.
    quint8 m_xkbEvent = 0;
    bool m_keyboardChanged = false;
};
