// SPDX-License-Identifier: MIT
#include "GlobalQueue.h"

#include <utility>

GlobalQueue &GlobalQueue::shared()
{
    static GlobalQueue queue;
    return queue;
}

void GlobalQueue::async(Work work)
{
    m_running.remove_if([](const Running &running) { return running.isDone->load(); });
    auto isDone = std::make_shared<std::atomic<bool>>(false);
    // First, as the thread could not be left alone where there is no memory to note it.
    m_running.push_back({isDone, {}});
    try {
        m_running.back().thread = std::jthread([work = std::move(work), isDone]() mutable {
            std::exchange(work, {})();
            *isDone = true;
        });
    } catch (...) {
        m_running.pop_back();
        throw;
    }
}

void GlobalQueue::waitForDone()
{
    m_running.clear();
}
