// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Sets $WAYLAND_DISPLAY, where it is not set, to the socket below $XDG_RUNTIME_DIR at which that
/// process listens: an X11 program learns so which compositor its Xwayland belongs to. The name is
/// empty where there is none, so that no connection is made to another desktop's.
void nameWaylandDisplayOf(qint64 process);
