// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// While it lives, exit() called from below the event loop ends the process at once, with status 1,
/// after `farewell`.
///
/// Qt calls exit() when the display server is gone (a logout, a crash). Everything that `main`
/// holds is still alive then, and the exit handlers would destroy process-wide objects that talk to
/// the server that no longer is. The session bus gives our name back by itself; what has to be
/// written is the farewell's business. One per process; to be made on the main thread when the
/// event loop is about to run.
class ExitGuard
{
public:
    explicit ExitGuard(std::function<void()> farewell);
    ~ExitGuard();
    ExitGuard(const ExitGuard &) = delete;
    ExitGuard &operator=(const ExitGuard &) = delete;
};

/// Keeps the kernel from writing this process's memory anywhere when it crashes: pictures of the
/// screen and the text read from them are in it. No effect on what the process may do.
///
/// Not by PR_SET_DUMPABLE: that hides /proc/PID/exe and /proc/PID/root from other processes of the
/// user, by which KWin and the portals tell which program asks them for the screen.
void forbidCoreDumps();
