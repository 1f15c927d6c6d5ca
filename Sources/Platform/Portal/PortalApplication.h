// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The id under which the portal knows a program by the name of its systemd unit, such as
/// "app-gnome-org.example.Editor-1234.scope"; empty when the unit is not an application's.
QString portalApplicationId(const QString &unit);

/// The id under which the portal knows this process: that of its desktop entry, where the portal
/// takes it from the program (since 1.19.4), which the first call asks it to; else that of the unit
/// that the desktop started it in. Empty for one that was started otherwise, which shares its
/// permissions with all such.
QString portalApplicationId();

/// Asks a portal that was started after the one that was asked last to take our id, as each takes
/// it before a connection's first other call alone. The answer is not waited for. From any thread.
void introduceToNewPortal();

/// The version of an interface of the portal, such as "Screenshot", which a desktop stands behind;
/// 0 where there is none. Starts the portal where need be.
uint portalVersion(const QString &interface);
