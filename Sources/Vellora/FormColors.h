// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

/// The colours of a grouped form, mixed from the desktop's palette so that they suit light and
/// dark ones alike.
namespace FormColors {
/// What a section's rows lie on.
QColor card(const QPalette &palette);
/// Hairlines, and outlines of controls.
QColor separator(const QPalette &palette);
/// The channel of a segmented picker or a switch that is off.
QColor trough(const QPalette &palette);
/// Text that matters less, and text that matters least.
QColor secondaryLabel(const QPalette &palette);
QColor tertiaryLabel(const QPalette &palette);
} // namespace FormColors
