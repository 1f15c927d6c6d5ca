// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <thread>

/// Work off the main thread. To be used from the main thread only.
class GlobalQueue
{
public:
    using Work = std::function<void()>;

    static GlobalQueue &shared();

    /// Runs `work`, which throws nothing, on a thread of its own, so that nothing waits for what
    /// was begun before. Throws std::system_error if the system cannot start one, std::bad_alloc if
    /// there is no memory for it.
    void async(Work work);
    /// Returns when everything has been done.
    void waitForDone();

private:
    struct Running
    {
        std::shared_ptr<std::atomic<bool>> isDone;
        std::jthread thread;
    };
    std::list<Running> m_running;
};
