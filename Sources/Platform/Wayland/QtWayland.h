// SPDX-License-Identifier: MIT
#pragma once

class QScreen;
class QWindow;
struct wl_display;
struct wl_output;
struct wl_surface;

/// Qt's own Wayland objects. Null when Qt does not run on Wayland.
wl_display *qtWaylandDisplay();
wl_output *qtWaylandOutput(QScreen &screen);
/// Null too for a window that has not been created.
wl_surface *qtWaylandSurface(QWindow &window);
