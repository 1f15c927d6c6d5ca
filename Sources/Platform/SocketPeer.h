// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The process that listens where the local socket `descriptor` is connected to; 0 where that
/// cannot be told, as in a sandbox that hides it.
qint64 processListeningAt(int descriptor);
