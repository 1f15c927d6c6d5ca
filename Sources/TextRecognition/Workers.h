// SPDX-License-Identifier: MIT
#pragma once

#include <QThreadPool>

#include <cstddef>
#include <functional>

namespace recognition {

/// Threads that share the work on a page with the thread that asks.
class Workers
{
public:
    /// `threads` in all, the asking one included.
    explicit Workers(int threads);
    ~Workers();

    int threads() const { return m_pool.maxThreadCount() + 1; }
    /// Calls `work` for 0 to `count` - 1, in this order, on several threads; returns when all is
    /// done. Several may ask at once: a page never waits for a helper that is busy with another.
    void forEach(std::size_t count, const std::function<void(std::size_t)> &work);

    /// Runs `task` on another thread some time.
    void start(std::function<void()> task);

private:
    QThreadPool m_pool;
};

} // namespace recognition
