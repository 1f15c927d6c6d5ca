// SPDX-License-Identifier: MIT
// Another program with a shortcut of its own.
//
//   key-holder KEYCODE MODIFIERS
//
// Both in the X server's numbers. Grabs the key and says "granted" or "refused"; keeps it, and says
// "press" for each press, until it is ended.
#include "Platform/X11/X11Connection.h"

#include <cstdio>
#include <cstdlib>

namespace {
void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}
} // namespace

int main(int argc, char **argv)
{
    const X11Connection connection;
    if (argc != 3 || !connection.isUsable()) {
        return 2;
    }
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(
        connection.xcb(), xcb_grab_key_checked(connection.xcb(), 0, connection.root(),
                                               static_cast<quint16>(std::atoi(argv[2])),
                                               static_cast<xcb_keycode_t>(std::atoi(argv[1])),
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    if (error) {
        say("refused");
        return 1;
    }
    say("granted");
    while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(connection.xcb())}) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            say("press");
        }
    }
    return 0;
}
