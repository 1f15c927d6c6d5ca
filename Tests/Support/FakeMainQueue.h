// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/MainQueue.h"

#include <QObject>

#include <memory>
#include <vector>

/// A main queue whose clock stands still until a test moves it. `async` goes through the real
/// event loop, as it has to from other threads.
class FakeMainQueue : public MainQueue
{
public:
    void async(Task task) override;
    void asyncAfter(std::chrono::milliseconds delay, Task task) override;
    std::shared_ptr<RepeatingTimer>
    scheduledTimer(std::chrono::milliseconds interval,
                   std::function<void(RepeatingTimer &)> block) override;

    /// Lets `duration` pass: runs what falls due, in the order of its time.
    void advance(std::chrono::milliseconds duration);

    /// How many tasks and timers wait for their time.
    int waitingCount() const;

    /// Without memory nothing can be put off.
    bool hasMemory = true;

private:
    class Timer;
    struct Entry
    {
        std::chrono::milliseconds due;
        /// Absent for a task.
        std::weak_ptr<Timer> timer;
        Task task;
    };

    std::chrono::milliseconds m_now{0};
    std::vector<Entry> m_entries;
    QObject m_context;
};
