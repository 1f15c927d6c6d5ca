// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

/// The command that a login item has for `program`: what it starts can tell, as no desktop tells a
/// program that it autostarts it.
QStringList commandAtLogin(const QString &program);

/// Whether such a command, a session that restores what ran at the last logout, or a call to the
/// program on the session bus started this process.
bool isLaunchedBySession();
