// SPDX-License-Identifier: MIT
#include "Platform/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <utility>

namespace {
std::function<void()> &farewell()
{
    // Never destroyed, because exit handlers ask for it.
    static auto *function = new std::function<void()>;
    return *function;
}

void endAtOnce()
{
    if (farewell()) {
        farewell()();
        std::fflush(nullptr);
        std::_Exit(EXIT_FAILURE);
    }
}

/// Destroyed first of all by exit() on the thread that made it.
struct FirstDestroyed
{
    ~FirstDestroyed() { endAtOnce(); }
};
} // namespace

ExitGuard::ExitGuard(std::function<void()> last)
{
    // An exit handler would come after those that destroy what is made from now on: one of them
    // waits for the recognition under way, which uses what others destroy. What belongs to a thread
    // goes before all of them.
    static thread_local const FirstDestroyed first;
    // For an exit() on another thread, which Xlib calls where it meets the end of the connection.
    static const int registered = std::atexit(endAtOnce);
    farewell() = registered == 0 ? std::move(last) : nullptr;
}

ExitGuard::~ExitGuard()
{
    farewell() = nullptr;
}

void forbidCoreDumps()
{
    // A limit of 0 keeps dumps out of files, but not from a program that the kernel hands them to
    // (core_pattern with a pipe); a limit of 1 byte does both (do_coredump in the kernel's
    // fs/coredump.c takes it for a crash of that program itself).
    const rlimit limit{.rlim_cur = 1, .rlim_max = 1};
    setrlimit(RLIMIT_CORE, &limit);
}
