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
} // namespace

ExitGuard::ExitGuard(std::function<void()> last)
{
    // Registered once, and late: exit handlers run in the opposite order, and this one has to come
    // before those that destroy what was made earlier.
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
