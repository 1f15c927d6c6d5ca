// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PanelMenu.h"

#include <QStringList>

#include <memory>

struct Platform;

/// What has to be done before the application object is made.
void prepareWaylandDesktop();

/// Whether Qt runs on a Wayland desktop.
bool isWaylandDesktop();

/// Sets the services of a Wayland desktop: screen recording, overlay surface, event monitor, key
/// tap, pasteboard and popup placement. `platform.screens` is set before and lives as long as
/// they do. `panelMenu` is the menu that a panel draws, which must not be in pictures.
///
/// Answers what this desktop withholds and nothing can stand in for, one sentence for people each;
/// empty where the program can work.
QStringList addWaylandServices(Platform &platform, const std::shared_ptr<PanelMenu> &panelMenu);

/// Adds how to take away what these desktops' services keep of a program that was killed, on X11
/// too: GNOME's settings outlive the kind of session.
void addLeftovers(Platform &platform);
