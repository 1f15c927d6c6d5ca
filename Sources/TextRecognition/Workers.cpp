// SPDX-License-Identifier: MIT
#include "Workers.h"

#include "Effort.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace recognition {

namespace {

/// The work that several threads take their parts of.
class SharedWork
{
public:
    SharedWork(std::size_t count, const std::function<void(std::size_t)> &work)
        : m_count(count)
        , m_work(work)
    {
    }

    void takePart() noexcept
    {
        try {
            for (std::size_t mine = m_next++; mine < m_count; mine = m_next++) {
                checkpoint();
                m_work(mine);
            }
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_failure) {
                m_failure = std::current_exception();
            }
            m_next = m_count;
        }
    }

    void throwFailure() const
    {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
    }

private:
    const std::size_t m_count;
    const std::function<void(std::size_t)> &m_work;
    std::atomic<std::size_t> m_next = 0;
    std::mutex m_mutex;
    std::exception_ptr m_failure;
};

} // namespace

Workers::Workers(int threads)
    : m_threads(std::max(1, threads))
{
}

void Workers::forEach(std::size_t count, const std::function<void(std::size_t)> &work) const
{
    SharedWork shared(count, work);
    {
        std::vector<std::jthread> helpers;
        const std::size_t most = std::min(count, std::size_t(m_threads));
        helpers.reserve(most);
        for (std::size_t i = 1; i < most; ++i) {
            try {
                helpers.emplace_back([&shared, effort = Effort::current()] {
                    const Effort::Share share(effort);
                    shared.takePart();
                });
            } catch (const std::system_error &) {
                // The system has no thread left: those that there are do it all.
                break;
            }
        }
        shared.takePart();
    }
    shared.throwFailure();
}

} // namespace recognition
