// SPDX-License-Identifier: MIT
// Asks the window manager to close a window, as its close button does.
//
//   close-window WINDOW
#include "Platform/X11/X11Connection.h"

#include <cstdlib>

int main(int argc, char **argv)
{
    const X11Connection connection;
    if (argc != 2 || !connection.isUsable()) {
        return 2;
    }
    constexpr quint32 now = XCB_CURRENT_TIME;
    constexpr quint32 byThePager = 2;
    connection.sendToRoot(static_cast<xcb_window_t>(std::strtoul(argv[1], nullptr, 0)),
                          "_NET_CLOSE_WINDOW", {now, byThePager});
    // The server drops what a client has sent when it finds that the client has gone: an answer
    // shows that it has read everything.
    const XcbReply<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
        connection.xcb(), xcb_get_input_focus(connection.xcb()), nullptr));
    return 0;
}
