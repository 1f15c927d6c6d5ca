// SPDX-License-Identifier: MIT
#pragma once

#include "Network/Engine.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace recognition {

/// Thrown for a model that is there and cannot be read.
class UnreadableModel : public std::runtime_error
{
public:
    explicit UnreadableModel(const QString &model)
        : std::runtime_error("unreadable model " + model.toStdString())
    {
    }
};

/// The loaded models, one copy of each, loaded when they are first asked for. Thread-safe.
class EngineCache
{
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// `now`: the clock that idleness is measured by.
    explicit EngineCache(ModelFolder folder, Now now = &Clock::now);

    /// The engine of `model`. Who asks while it is being loaded waits for it. Null if there is no
    /// such model; throws UnreadableModel if there is and it cannot be loaded.
    std::shared_ptr<const Engine> engine(const QString &model, Dictionary dictionary);
    const ModelFolder &folder() const { return m_folder; }

    /// The models that are installed and, for all that is known, can be read.
    QStringList readable() const;
    bool has(const QString &model) const;
    /// The models that are installed and could not be read when they were asked for.
    QStringList unreadable() const;

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
    /// What could not be read, as its file was then: another file of its name may be whole.
    std::map<QString, ModelFile> m_unreadable;
    std::map<Key, std::shared_ptr<Entry>> m_entries;
};

} // namespace recognition
