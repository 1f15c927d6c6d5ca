// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Overlays.h"

#include <QDeadlineTimer>
#include <QObject>

#include <memory>

/// The keyboard of panels that no window manager takes care of: taken for them, kept, and given
/// back to whom it was taken from. Main thread only.
class X11OverlayKeyboard : public QObject
{
    Q_OBJECT

public:
    X11OverlayKeyboard(std::shared_ptr<X11Connection> connection,
                       std::shared_ptr<X11Overlays> overlays);

    /// Gives the keyboard to a panel's window at once.
    void take(xcb_window_t panel);

    /// Takes the keyboard back where it left the panels only because the window manager was late:
    /// a window of ours was closed just before the panels came, such as the result window by the
    /// click that starts a capture, and the window manager passed the keyboard on to the next
    /// one afterwards. False where somebody wants to use another program.
    bool takeBack();

    /// Gives the keyboard of the panel's window, if it has it, to a panel that stays or to the
    /// program that had it before.
    void handOver(xcb_window_t panel);

private:
    bool eventFilter(QObject *receiver, QEvent *event) override;
    static void set(xcb_window_t panel);
    bool isManagerLate(xcb_window_t focused) const;

    std::shared_ptr<X11Connection> m_connection;
    std::shared_ptr<X11Overlays> m_overlays;
    /// The window of another program that had the keyboard before our panels took it.
    xcb_window_t m_formerFocus = XCB_WINDOW_NONE;
    /// Until then, the window manager may not have noticed that a window of ours was closed.
    QDeadlineTimer m_closing{0};
    /// Until then, a late window manager is expected to take the keyboard.
    QDeadlineTimer m_lateness{0};
};
