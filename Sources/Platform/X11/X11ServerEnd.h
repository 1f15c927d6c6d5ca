// SPDX-License-Identifier: MIT
#pragma once

/// Tells the X server's end, where Xlib meets it, in one line, as Qt does where it meets it itself,
/// and calls exit(). Xlib's own handler, which Qt's calls, adds two lines to that. Only once Qt has
/// its connection.
void tellServerEndInOneLine();
