// SPDX-License-Identifier: MIT
#include "IdleDropper.h"

#include <system_error>

namespace recognition {

IdleDropper::IdleDropper(EngineCache &engines, std::chrono::milliseconds age)
    : m_engines(engines)
    , m_age(age)
{
}

IdleDropper::~IdleDropper()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void IdleDropper::restart()
{
    const std::lock_guard lock(m_mutex);
    if (m_running || m_stop) {
        return;
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
    try {
        m_thread = std::thread(&IdleDropper::run, this);
        m_running = true;
    } catch (const std::system_error &) {
        // The system has no thread left: the engines stay until the next picture is read.
    }
}

void IdleDropper::run()
{
    std::unique_lock lock(m_mutex);
    for (bool left = true; left && !m_stop;) {
        // Looking twice per age, an engine lives at most one and a half of it.
        m_wake.wait_for(lock, m_age / 2, [this] { return m_stop; });
        lock.unlock();
        left = m_engines.dropIdle(m_age);
        lock.lock();
    }
    m_running = false;
}

} // namespace recognition
