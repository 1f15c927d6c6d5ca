// SPDX-License-Identifier: MIT
#include "Platform/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>

namespace {
bool isGuarded = false;

void endAtOnce()
{
    if (isGuarded) {
        std::fflush(nullptr);
        std::_Exit(EXIT_FAILURE);
    }
}
} // namespace

ExitGuard::ExitGuard()
{
    // Registered once, and late: exit handlers run in the opposite order, and this one has to come
    // before those that destroy what was made earlier.
    static const int registered = std::atexit(endAtOnce);
    isGuarded = registered == 0;
}

ExitGuard::~ExitGuard()
{
    isGuarded = false;
}

void forbidCoreDumps()
{
    // A limit of 0 keeps dumps out of files, but not from a program that the kernel hands them to
    // (core_pattern with a pipe); a limit of 1 byte does both (do_coredump in the kernel's
    // fs/coredump.c takes it for a crash of that program itself).
    const rlimit limit{.rlim_cur = 1, .rlim_max = 1};
    setrlimit(RLIMIT_CORE, &limit);
}
