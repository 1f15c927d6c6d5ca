// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11RootImage.h"

#include <QDeadlineTimer>
#include <QImage>
#include <QRect>

#include <functional>

/// Asks `isDone` after every change of what the root window shows, at once for the first time,
/// until it says yes. False once `deadline` has passed. Blocks, without spinning.
bool awaitRootChange(const X11Connection &connection, QDeadlineTimer deadline,
                     const std::function<bool()> &isDone);

/// What the root window shows in `pixels` once that has stopped changing, or after `deadline`.
/// For when nothing but the picture itself tells that what was asked for has happened. Blocks.
QImage readSettled(const X11Connection &connection, X11RootImage &rootImage, const QRect &pixels,
                   QDeadlineTimer deadline);
