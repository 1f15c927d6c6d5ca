// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <optional>

class QScreen;

/// What bars of the layer shell leave of a screen, in points: the size that the compositor gives to
/// a layer that makes room for them and is never shown. It tells no place, so not at which edges
/// they are. Absent where there is no layer shell. Waits for the compositor. Main thread only.
std::optional<QSize> sizeBesideLayers(const QScreen &screen);
