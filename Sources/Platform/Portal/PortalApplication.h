// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The id under which the portal knows a program by the name of its systemd unit, such as
/// "app-gnome-org.example.Editor-1234.scope"; empty when the unit is not an application's.
QString portalApplicationId(const QString &unit);

/// The id under which the portal knows this process: desktops start applications in units of their
/// own. Empty for one that was started otherwise, which shares its permissions with all such.
QString portalApplicationId();
