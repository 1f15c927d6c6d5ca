// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <optional>

class QScreen;

/// Qt's screen of this geometry; null when it is gone.
QScreen *qtScreen(const Screen &screen);

/// The screen of a `Screen::displayNumber`, if there is one.
std::optional<Screen> screenOf(const Screens &screens, quint32 display);

/// Qt's screen of a `Screen::displayNumber`; null when there is none.
QScreen *qtScreen(const Screens &screens, quint32 display);

/// In points.
QSizeF sizeOf(const Screen &screen);

/// The pixels of `rect` alone, out of an `image` that shows `size` points of which the top-left
/// corner is (0, 0). A pixel of which `rect` has a part is one of them. Null where `rect` lies
/// outside.
QImage croppedToPoints(const QImage &image, QSizeF size, const QRectF &rect);

/// What `screen` shows of `rect`, in points of it, out of a picture of all screens at once; null
/// where `rect` lies outside of it.
QImage cutFromDesktop(const QImage &picture, const Screens &screens, const Screen &screen,
                      const QRectF &rect);
