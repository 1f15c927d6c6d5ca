// SPDX-License-Identifier: MIT
#pragma once

#include "Network/Engine.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace recognition {

/// The loaded models, one copy of each, loaded when they are first asked for. Thread-safe.
class EngineCache
{
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// `now`: the clock that idleness is measured by.
    explicit EngineCache(ModelFolder folder, Now now = &Clock::now);

    /// The engine of `model`. Who asks while it is being loaded waits for it. Null if it cannot be
    /// loaded.
    std::shared_ptr<const Engine> engine(const QString &model, Dictionary dictionary);
    const ModelFolder &folder() const { return m_folder; }

    /// Drops the engines that nobody has or asked for within `age`, and gives their memory back to
    /// the system. True if engines are left that a later call may drop.
    bool dropIdle(std::chrono::milliseconds age);
    /// Engines loaded.
    std::size_t count() const;

private:
    using Key = std::pair<QString, Dictionary>;
    struct Entry
    {
        /// Held while it is loaded.
        mutable std::mutex mutex;
        std::shared_ptr<const Engine> engine;
        /// Guarded by the cache.
        Clock::time_point used;

        /// Not asked for later than `usedBefore`, not being loaded, and in nobody's hands.
        bool isFree(Clock::time_point usedBefore) const;
    };

    const ModelFolder m_folder;
    const Now m_now;
    mutable std::mutex m_mutex;
    std::map<Key, std::shared_ptr<Entry>> m_entries;
};

} // namespace recognition
