// SPDX-License-Identifier: MIT
#include "Platform/X11/X11OverlayKeyboard.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

#include <chrono>
#include <utility>

namespace {
/// KWin, drawing in software on a busy machine, was seen to need some 100 ms; another program that
/// a person turns to within this time gets the keyboard when it is turned to again.
constexpr std::chrono::seconds longestLateness(1);
} // namespace

X11OverlayKeyboard::X11OverlayKeyboard(std::shared_ptr<X11Connection> connection,
                                       std::shared_ptr<X11Overlays> overlays)
    : m_connection(std::move(connection))
    , m_overlays(std::move(overlays))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool X11OverlayKeyboard::eventFilter(QObject *receiver, QEvent *event)
{
    if (event->type() == QEvent::Hide && receiver == QGuiApplication::focusWindow() &&
        !(QGuiApplication::focusWindow()->flags() & Qt::BypassWindowManagerHint)) {
        m_closing = QDeadlineTimer(longestLateness);
    }
    return false;
}

void X11OverlayKeyboard::take(xcb_window_t panel)
{
    const xcb_window_t focused = focusedWindow(qtXcbConnection());
    if (!isQtWindow(focused)) {
        m_formerFocus = focused;
        m_lateness = isManagerLate(focused) ? QDeadlineTimer(longestLateness) : QDeadlineTimer(0);
        m_closing = QDeadlineTimer(0);
    }
    set(panel);
}

void X11OverlayKeyboard::set(xcb_window_t panel)
{
    xcb_connection_t *qt = qtXcbConnection();
    // No window manager stands between: the window is viewable as soon as the server has read
    // Qt's request to map it, which went out before on the same connection. The current time,
    // because the server ignores a time older than the last change of focus, and Qt's may be.
    xcb_set_input_focus(qt, XCB_INPUT_FOCUS_PARENT, panel, XCB_CURRENT_TIME);
    xcb_flush(qt);
}

bool X11OverlayKeyboard::takeBack()
{
    const bool wasLate = !std::exchange(m_lateness, QDeadlineTimer(0)).hasExpired();
    const X11Overlay *live = m_overlays->lastLive();
    if (!wasLate || !live) {
        return false;
    }
    m_formerFocus = focusedWindow(qtXcbConnection());
    set(live->window);
    return true;
}

void X11OverlayKeyboard::handOver(xcb_window_t panel)
{
    xcb_connection_t *qt = qtXcbConnection();
    if (focusedWindow(qt) != panel) {
        return;
    }
    // The server gives the keyboard of a window that goes to no one; a window manager does not take
    // care of windows that are not its own.
    const X11Overlay *live = m_overlays->lastLive();
    const xcb_window_t next = live ? live->window : m_formerFocus;
    if (next == XCB_WINDOW_NONE) {
        return;
    }
    // Fails without harm where that window is gone or hidden by now.
    const auto cookie =
        xcb_set_input_focus_checked(qt, XCB_INPUT_FOCUS_PARENT, next, XCB_CURRENT_TIME);
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(qt, cookie));
    if (!live) {
        m_formerFocus = XCB_WINDOW_NONE;
    }
}

/// Whether the window manager still has to give the keyboard to the window it takes for the active
/// one, or to find out that this window is closed: the server gave the keyboard to no one then.
bool X11OverlayKeyboard::isManagerLate(xcb_window_t focused) const
{
    const auto active = m_connection->property(m_connection->root(), "_NET_ACTIVE_WINDOW");
    // Programs may have the keyboard in another window than the one that is managed.
    const bool isBehind = !active.isEmpty() && active.first() != XCB_WINDOW_NONE &&
                          !m_connection->haveOneOwner(active.first(), focused);
    return isBehind || !m_closing.hasExpired();
}
