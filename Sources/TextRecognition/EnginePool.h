// SPDX-License-Identifier: MIT
#pragma once

#include "Engine.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <tuple>
#include <vector>

namespace recognition {

/// The loaded models. Each is loaded when it is first asked for, lent to one thread at a time and
/// kept for the next. Thread-safe; the pool outlives its loans.
class EnginePool
{
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// `now`: the clock that idleness is measured by.
    explicit EnginePool(ModelFolder folder, Now now = &Clock::now);

    /// An engine, lent until this goes out of scope.
    class Loan
    {
    public:
        Loan(Loan &&other) noexcept;
        Loan &operator=(Loan &&) = delete;
        ~Loan();
        explicit operator bool() const { return m_engine != nullptr; }
        Engine *operator->() const { return m_engine.get(); }

    private:
        friend class EnginePool;
        Loan(EnginePool *pool, QString model, Dictionary dictionary,
             std::unique_ptr<Engine> engine);

        EnginePool *m_pool;
        QString m_model;
        Dictionary m_dictionary;
        std::unique_ptr<Engine> m_engine;
    };

    /// Lends `model`, loading it if no copy is idle. Empty if it cannot be loaded.
    Loan lend(const QString &model, Dictionary dictionary);
    const ModelFolder &folder() const { return m_folder; }

    /// Drops the engines that nobody used for `age`, and gives their memory back to the system.
    /// True if engines are left that a later call may drop.
    bool dropIdle(std::chrono::milliseconds age);
    /// Engines waiting for work.
    std::size_t idleCount() const;

private:
    struct Key
    {
        QString model;
        Dictionary dictionary;
        bool operator<(const Key &other) const
        {
            return std::tie(model, dictionary) < std::tie(other.model, other.dictionary);
        }
    };
    struct Idle
    {
        std::unique_ptr<Engine> engine;
        Clock::time_point since;
    };

    void giveBack(const QString &model, Dictionary dictionary, std::unique_ptr<Engine> engine);

    const ModelFolder m_folder;
    const Now m_now;
    mutable std::mutex m_mutex;
    std::map<Key, std::vector<Idle>> m_idle;
};

} // namespace recognition
