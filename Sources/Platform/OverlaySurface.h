// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"

#include <QPixmap>

#include <optional>

class QWidget;

/// Puts panels over whole screens, above every other window, panel and menu, with keyboard
/// focus. Main thread only.
class OverlaySurface
{
public:
    virtual ~OverlaySurface() = default;

    /// Makes `panel`, not shown yet, cover `screen`. Called before the panel is ordered front.
    ///
    /// Returns what the panel has to show beneath its dim: null where the desktop itself shows
    /// through, else a picture of the screen, taken now, with its device pixel ratio set. Absent
    /// where the desktop lets the screen not be covered; the panel may be destroyed then.
    virtual std::optional<QPixmap> cover(QWidget &panel, const Screen &screen) = 0;

    /// Shows `panel` above everything, whatever application is active.
    virtual void orderFront(QWidget &panel) = 0;

    /// Gives `panel`, shown before, the keyboard and makes our application the active one.
    virtual void makeKey(QWidget &panel) = 0;

    /// Takes `panel` off the screen at once. It is not to be shown again and may be destroyed
    /// any time after the event being handled; grabs made until then show nothing of it.
    virtual void orderOut(QWidget &panel) = 0;
};
