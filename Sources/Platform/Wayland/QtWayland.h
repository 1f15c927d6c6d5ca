// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QScreen;
class QWidget;
class QWindow;
struct wl_display;
struct wl_event_queue;
struct wl_interface;
struct wl_output;
struct wl_seat;
struct wl_surface;

/// Qt's own Wayland objects. Null when Qt does not run on Wayland.
wl_display *qtWaylandDisplay();
wl_output *qtWaylandOutput(QScreen &screen);
/// Null too where there is neither pointer nor keyboard.
wl_seat *qtWaylandSeat();
/// Null too for a window that has not been created.
wl_surface *qtWaylandSurface(QWindow &window);

/// Lets windows with the flag `BypassWindowManagerHint` have no role of Qt's, so that one of ours
/// can be given to them. To be called before the application object is made.
void leaveQtWindowsWithoutRole();

/// Whether `leaveQtWindowsWithoutRole` was called in time.
bool areQtWindowsLeftWithoutRole();

/// The surface that `window`, which is not shown yet, will have on `screen`.
wl_surface *makeQtWaylandSurface(QWidget &window, QScreen &screen);

/// Binds the first global of the interface on Qt's connection, in its version but not above
/// `version`; null when it is not offered. Events of it, and of what it makes, come on `queue`,
/// which belongs to Qt's connection. Waits for the compositor.
void *bindOnQtConnection(const wl_interface &interface, quint32 version, wl_event_queue *queue);
