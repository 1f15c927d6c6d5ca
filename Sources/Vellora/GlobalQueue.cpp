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
    std::jthread thread([work = std::move(work), isDone]() mutable {
        std::exchange(work, {})();
        *isDone = true;
    });
    m_running.push_back({std::move(isDone), std::move(thread)});
}

void GlobalQueue::waitForDone()
{
    m_running.clear();
}
