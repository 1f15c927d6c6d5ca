// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

struct Platform;

/// What has to be done before the application object is made.
void prepareWaylandDesktop();

/// Whether Qt runs on a Wayland desktop.
bool isWaylandDesktop();

/// Sets the services of a Wayland desktop: screen recording, overlay surface, event monitor, key
/// tap, pasteboard and popup placement. `platform.screens` is set before and lives as long as
/// they do.
///
/// Answers what this desktop withholds and nothing can stand in for, one sentence for people each;
/// empty where the program can work.
QStringList addWaylandServices(Platform &platform);
