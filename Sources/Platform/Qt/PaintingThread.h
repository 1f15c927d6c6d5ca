// SPDX-License-Identifier: MIT
#pragma once

/// Keeps the one thread that Qt paints with beside the main one, from now on.
///
/// Qt hands parts of large fills to its pool of threads and waits for them. Where the system has no
/// thread left it would wait for ever, with the overlay on the screen and no way to quit. To be
/// called once, when the application object is there.
void keepPaintingThread();
