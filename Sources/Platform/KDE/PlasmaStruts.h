// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>

#include <optional>

/// What Plasma's own panels leave of the screen of this name, in Qt's global coordinates. Absent
/// where Plasma's shell does not answer at once. Blocks until then. Main thread only.
std::optional<QRect> availablePlasmaScreenRect(const QString &screenName);
