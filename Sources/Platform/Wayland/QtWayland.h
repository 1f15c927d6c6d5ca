// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QScreen;
class QWindow;
struct wl_display;
struct wl_event_queue;
struct wl_interface;
struct wl_output;
struct wl_surface;
struct xdg_surface;

/// Qt's own Wayland objects. Null when Qt does not run on Wayland.
wl_display *qtWaylandDisplay();
wl_output *qtWaylandOutput(QScreen &screen);
/// Null too for a window that has not been created.
wl_surface *qtWaylandSurface(QWindow &window);
/// Null too for a window that is not shown as one of xdg_shell's.
xdg_surface *qtXdgSurface(QWindow &window);

/// Binds the first global of the interface on Qt's connection, in its version but not above
/// `version`; null when it is not offered. Events of it, and of what it makes, come on `queue`,
/// which belongs to Qt's connection. Waits for the compositor.
void *bindOnQtConnection(const wl_interface &interface, quint32 version, wl_event_queue *queue);
