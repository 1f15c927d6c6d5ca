// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

#include <optional>

/// Whether the session has a bus. Asked before every connect:
/// without an address libdbus starts a bus of its own, on which nobody else is.
bool hasSessionBus();

/// The process's connection to the session bus, if there is a bus.
std::optional<QDBusConnection> sessionBus();
