// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// A timer that fires again and again until it is invalidated or destroyed.
class RepeatingTimer
{
public:
    virtual ~RepeatingTimer() = default;

    virtual bool isValid() const = 0;
    /// Stops it for good. A timer may be invalidated from within its own block.
    virtual void invalidate() = 0;
};

/// Work to be done on the main thread later: the program's one clock.
class MainQueue
{
public:
    using Task = std::function<void()>;

    virtual ~MainQueue() = default;

    /// Runs `task` on the main thread, never from within this call. Any thread.
    virtual void async(Task task) = 0;

    /// Runs `task` on the main thread once `delay` has passed. Main thread only.
    virtual void asyncAfter(std::chrono::milliseconds delay, Task task) = 0;

    /// Runs `block` every `interval` with the timer that fired. Main thread only.
    virtual std::shared_ptr<RepeatingTimer>
    scheduledTimer(std::chrono::milliseconds interval,
                   std::function<void(RepeatingTimer &)> block) = 0;
};
