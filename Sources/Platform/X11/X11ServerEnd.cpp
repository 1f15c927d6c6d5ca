// SPDX-License-Identifier: MIT
#include "Platform/X11/X11ServerEnd.h"

#include <QtGlobal>

#include <cstdlib>

// Last, for its macros.
#include <X11/Xlib.h>

namespace {
int serverDidEnd(Display *)
{
    qWarning("The X11 connection broke");
    std::exit(EXIT_FAILURE);
}
} // namespace

void tellServerEndInOneLine()
{
    XSetIOErrorHandler(serverDidEnd);
}
