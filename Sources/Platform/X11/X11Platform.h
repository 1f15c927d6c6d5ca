// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Qt/QtScreens.h"

#include <memory>

struct Platform;

/// The exact pixels of Qt's screens, from the monitors that the X server names; for `QtScreens`.
QtScreens::PixelGeometry x11PixelGeometry();

/// Whether Qt runs on an X11 desktop.
bool isX11Desktop();

/// Whether that is Xwayland's, for X11 programs on a Wayland desktop. They see nothing of the
/// screen and get no keys but their own there.
bool isXwaylandDesktop();

/// The process that listens for X11 programs, which on Xwayland is the compositor; 0 where that
/// cannot be told.
qint64 x11ListeningProcess();

/// Sets the services of an X11 desktop: screen recording, overlay surface, event monitor and
/// popup placement. `platform.screens` is set before and lives as long as they do.
void addX11Services(Platform &platform);

/// Places windows exactly, on Xwayland too. `screens` outlives it.
std::unique_ptr<PopupPlacement> makeX11PopupPlacement(const Screens &screens);
