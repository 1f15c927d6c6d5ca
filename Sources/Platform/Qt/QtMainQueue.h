// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/MainQueue.h"

#include <QObject>

/// The main thread's Qt event loop as the program's queue. Made and destroyed on the main thread;
/// what is still waiting when it is destroyed never runs. Nothing ticks while nothing waits.
class QtMainQueue : public MainQueue
{
public:
    void async(Task task) override;
    void asyncAfter(std::chrono::milliseconds delay, Task task) override;
    std::shared_ptr<RepeatingTimer>
    scheduledTimer(std::chrono::milliseconds interval,
                   std::function<void(RepeatingTimer &)> block) override;

private:
    /// Every waiting event and timer belongs to it and goes with it.
    QObject m_context;
};
