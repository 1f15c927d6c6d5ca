// SPDX-License-Identifier: MIT
#include "Platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

/// A signal handler may do little more than write; the event loop reads the other end.
std::array<int, 2> wakeUpPipe{-1, -1};

void wakeUp(int)
{
    const char byte = 0;
    // Nothing can be done about a failure here.
    [[maybe_unused]] const auto written = write(wakeUpPipe[1], &byte, 1);
}
} // namespace

TerminationSignals::TerminationSignals()
{
    // Writing to a display server that has just ended then fails with an error, which is logged,
    // where the signal would end the program without a word. Never taken back, because the display
    // is written to until the very end.
    std::signal(SIGPIPE, SIG_IGN);
    if (pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    for (const int signal : handledSignals) {
        std::signal(signal, wakeUp);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int signal : handledSignals) {
        std::signal(signal, SIG_DFL);
    }
    for (int &end : wakeUpPipe) {
        close(end);
        end = -1;
    }
}
