// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"

#include <QImage>

/// Grabbing what stands under a rectangle of the screens.
namespace ScreenCapture {
/// The pixels under `rect` (global Cocoa coordinates), as one picture of one display: the first
/// that holds all of `rect`, else the one that holds most of it. The display's own pixel density;
/// null on any failure. Main thread only.
QImage capture(const CocoaRect &rect);
} // namespace ScreenCapture
