// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>

struct XcbFree
{
    void operator()(void *memory) const { std::free(memory); }
};

/// What the server answered; freed with it. Null where it answered with an error.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

/// A connection of our own to the X server that $DISPLAY names, apart from Qt's: what is awaited
/// on it never takes an event from Qt. Main thread only.
///
/// Without a server `isUsable` is false and every question is answered as by an empty desktop.
class X11Connection
{
public:
    X11Connection();
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    /// Whether the server answers.
    bool isUsable() const;

    xcb_connection_t *xcb() const { return m_xcb; }
    const xcb_screen_t *screen() const { return m_screen; }
    /// The number of `screen` on its server, as in "_NET_WM_CM_S0".
    int screenNumber() const { return m_screenNumber; }
    xcb_window_t root() const { return m_screen ? m_screen->root : 0; }

    /// The atom of that name, made where the server does not know it yet.
    xcb_atom_t atom(const char *name) const;

    /// The 32-bit items of a property, at most 1024; empty where there is none.
    QList<quint32> property(xcb_window_t window, const char *name) const;

    /// Whether both windows were made by the same program.
    bool haveOneOwner(xcb_window_t one, xcb_window_t other) const;

    /// Whether a compositing manager runs, so that windows with alpha show what is beneath them.
    bool isComposited() const;

    /// Sends a client message about `window` to the root window, for the window manager.
    void sendToRoot(xcb_window_t window, const char *type, const QList<quint32> &data) const;

    /// Hands every event to `isAwaited` until it says yes. False once `limit` has passed.
    ///
    /// Blocks, without spinning.
    bool awaitEvent(const std::function<bool(const xcb_generic_event_t &)> &isAwaited,
                    std::chrono::milliseconds limit) const;

    /// Blocks until the server has sent something or `limit` has passed.
    void awaitInput(std::chrono::milliseconds limit) const;

private:
    xcb_connection_t *m_xcb = nullptr;
    const xcb_screen_t *m_screen = nullptr;
    int m_screenNumber = 0;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
};

/// Qt's own connection, on which a request takes its place among those that Qt sends; null where
/// Qt is not on X11.
xcb_connection_t *qtXcbConnection();

/// Whether the window was made by this program's Qt.
bool isQtWindow(xcb_window_t window);

/// The window with the keyboard, as the requests sent on that connection so far left it; none (0)
/// or the server's placeholder for "where the pointer is" (1) where no window has it.
xcb_window_t focusedWindow(xcb_connection_t *connection);
