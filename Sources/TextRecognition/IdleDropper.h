// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"

#include <condition_variable>
#include <thread>

namespace recognition {

/// Drops a cache's engines when they have been idle for a while. Its thread lives only as long as
/// there is something to drop, so that an idle program has no wake-ups.
class IdleDropper
{
public:
    IdleDropper(EngineCache &engines, std::chrono::milliseconds age);
    ~IdleDropper();

    /// To be called when engines may have become idle.
    void restart();

private:
    void run();

    EngineCache &m_engines;
    const std::chrono::milliseconds m_age;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_running = false;
    bool m_stop = false;
    std::thread m_thread;
};

} // namespace recognition
