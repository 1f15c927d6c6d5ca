// SPDX-License-Identifier: MIT
#include "Support/FakeMainQueue.h"

#include <algorithm>
#include <new>

class FakeMainQueue::Timer : public RepeatingTimer
{
public:
    Timer(std::chrono::milliseconds period, std::function<void(RepeatingTimer &)> work)
        : interval(period)
        , block(std::move(work))
    {
    }

    bool isValid() const override { return valid; }
    void invalidate() override { valid = false; }

    const std::chrono::milliseconds interval;
    const std::function<void(RepeatingTimer &)> block;
    bool valid = true;
};

void FakeMainQueue::async(Task task)
{
    QMetaObject::invokeMethod(&m_context, std::move(task), Qt::QueuedConnection);
}

void FakeMainQueue::asyncAfter(std::chrono::milliseconds delay, Task task)
{
    if (!hasMemory) {
        throw std::bad_alloc();
    }
    m_entries.push_back({m_now + delay, {}, std::move(task)});
}

std::shared_ptr<RepeatingTimer>
FakeMainQueue::scheduledTimer(std::chrono::milliseconds interval,
                              std::function<void(RepeatingTimer &)> block)
{
    auto timer = std::make_shared<Timer>(interval, std::move(block));
    m_entries.push_back({m_now + interval, timer, nullptr});
    return timer;
}

void FakeMainQueue::advance(std::chrono::milliseconds duration)
{
    const auto end = m_now + duration;
    for (;;) {
        const auto next = std::ranges::min_element(m_entries, {}, &Entry::due);
        if (next == m_entries.end() || next->due > end) {
            break;
        }
        const Entry entry = std::move(*next);
        m_entries.erase(next);
        m_now = entry.due;
        if (entry.task) {
            entry.task();
        } else if (const auto timer = entry.timer.lock(); timer && timer->isValid()) {
            timer->block(*timer);
            if (timer->isValid()) {
                m_entries.push_back({entry.due + timer->interval, timer, nullptr});
            }
        }
    }
    m_now = end;
}

int FakeMainQueue::waitingCount() const
{
    return static_cast<int>(std::ranges::count_if(m_entries, [](const Entry &entry) {
        const auto timer = entry.timer.lock();
        return entry.task || (timer && timer->isValid());
    }));
}
