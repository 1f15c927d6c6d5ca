// SPDX-License-Identifier: MIT
#include "Workers.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace recognition {

namespace {

/// One call of `forEach`; helpers that come too late find nothing to do and never touch `work`.
class Batch
{
public:
    Batch(std::size_t count, const std::function<void(std::size_t)> &work)
        : m_count(count)
        , m_work(work)
    {
    }

    void takePart()
    {
        for (;;) {
            std::size_t mine = 0;
            {
                const std::lock_guard lock(m_mutex);
                if (m_next == m_count) {
                    return;
                }
                mine = m_next++;
                ++m_busy;
            }
            m_work(mine);
            const std::lock_guard lock(m_mutex);
            --m_busy;
            if (m_next == m_count && m_busy == 0) {
                m_done.notify_all();
            }
        }
    }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_done.wait(lock, [this] { return m_next == m_count && m_busy == 0; });
    }

private:
    const std::size_t m_count;
    const std::function<void(std::size_t)> &m_work;
    std::mutex m_mutex;
    std::condition_variable m_done;
    std::size_t m_next = 0;
    std::size_t m_busy = 0;
};

} // namespace

Workers::Workers(int threads)
{
    m_pool.setMaxThreadCount(std::max(1, threads - 1));
    // Idle helpers end after half a minute.
    m_pool.setExpiryTimeout(30'000);
}

Workers::~Workers() = default;

void Workers::start(std::function<void()> task)
{
    m_pool.start(std::move(task));
}

void Workers::forEach(std::size_t count, const std::function<void(std::size_t)> &work)
{
    if (count == 0) {
        return;
    }
    const auto batch = std::make_shared<Batch>(count, work);
    const auto helpers = std::min(count - 1, std::size_t(m_pool.maxThreadCount()));
    for (std::size_t i = 0; i < helpers; ++i) {
        m_pool.start([batch] { batch->takePart(); });
    }
    batch->takePart();
    batch->wait();
}

} // namespace recognition
