// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QString>

/// The listener's first shortcut: the key O (31, kVK_ANSI_O) with Command and Shift.
inline constexpr KeyCombination commandShiftO{31, KeyFlags::command | KeyFlags::shift};

/// What the listener writes to the log.
inline const QString notTrustedLine =
    QStringLiteral("GlobalHotkey: Accessibility permission not yet granted");
inline const QString notCreatedLine = QStringLiteral(
    "GlobalHotkey: Failed to create event tap — Accessibility permission likely denied");
