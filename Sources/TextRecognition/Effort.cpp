// SPDX-License-Identifier: MIT
#include "Effort.h"

#include <ctime>
#include <utility>

namespace recognition {

namespace {
thread_local Effort::Share *share = nullptr;
} // namespace

std::chrono::nanoseconds threadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Effort::Effort(std::stop_token stop, std::chrono::nanoseconds budget, ThreadClock clock)
    : m_stop(std::move(stop))
    , m_budget(budget)
    , m_clock(clock)
{
}

Effort *Effort::current()
{
    return share ? share->m_effort : nullptr;
}

Effort::Share::Share(Effort *effort)
    : m_effort(effort)
    , m_outer(std::exchange(share, this))
    , m_counted(effort ? effort->m_clock() : std::chrono::nanoseconds(0))
{
}

Effort::Share::~Share()
{
    if (m_effort) {
        count();
    }
    share = m_outer;
}

void Effort::Share::count()
{
    const std::chrono::nanoseconds now = m_effort->m_clock();
    m_effort->m_taken += (now - m_counted).count();
    m_counted = now;
}

void checkpoint()
{
    if (!share || !share->m_effort) {
        return;
    }
    const Effort &effort = *share->m_effort;
    if (effort.isStopped()) {
        throw Stopped();
    }
    constexpr int callsPerCount = 8;
    if (++share->m_calls % callsPerCount == 0) {
        share->count();
    }
    if (effort.isSpent()) {
        throw Spent();
    }
}

void beginReading()
{
    if (Effort *effort = Effort::current()) {
        effort->beginReading();
    }
}

} // namespace recognition
