// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <memory>

/// Keeps the compositor's shortcuts from a window while that has the keyboard
/// (zwp_keyboard_shortcuts_inhibit_manager_v1). Null where the compositor offers no such thing; it
/// may ask its user first, and let the keys through until then. Waits for the compositor.
std::unique_ptr<KeyTap::Inhibitor> inhibitWaylandShortcuts(QWindow &window);
