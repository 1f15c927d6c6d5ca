// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QString>
#include <QStringList>

/// Whether `accelerator`, as GTK writes them ("<Shift><Super>o"), stands for a key with one of
/// these of XKB's names, held with exactly these bits of `KeyFlags`.
bool isAccelerator(const QString &accelerator, quint64 flags, const QStringList &keysyms);

/// Whether GNOME's shell, its window manager, its settings daemon or a shortcut of the user's has
/// the combination. None of them tells, and of two that ask for one the later gets nothing.
/// Shortcuts that run `ourCommand` do not count.
bool isGnomeKey(const KeyCombination &combination, const QString &ourCommand);
