// SPDX-License-Identifier: MIT
#pragma once

#include "Engine.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <tuple>
#include <vector>

namespace recognition {

/// The loaded models. Each is loaded when it is first asked for, lent to one thread at a time and
/// kept for the next, as long as there is room. Thread-safe; the pool outlives its loans.
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

    /// As long as this lives, a page is read, and no engine that was used for it is dropped.
    class Page
    {
    public:
        explicit Page(EnginePool &pool);
        ~Page();
        Page(const Page &) = delete;
        Page &operator=(const Page &) = delete;

    private:
        EnginePool &m_pool;
    };

    /// What is done if all loaded copies of a model are lent.
    enum class IfLent { Load, Wait };

    /// Lends `model`, loading it if no copy is idle; with `IfLent::Wait` only if there is none at
    /// all, for what is read faster than a model is loaded. If loading would make more than `room`
    /// megabytes of models, others that are idle are dropped first, those unused for longest before
    /// all. Empty if it cannot be loaded.
    Loan lend(const QString &model, Dictionary dictionary, IfLent ifLent = IfLent::Load);
    const ModelFolder &folder() const { return m_folder; }

    /// Drops the engines that nobody used for `age`, and gives their memory back to the system.
    /// True if engines are left that a later call may drop.
    bool dropIdle(std::chrono::milliseconds age);
    /// In megabytes: the models of two scripts with Chinese characters, the third's single copy and
    /// English.
    static constexpr int room = 210;
    /// What a loaded copy of `model` takes, in megabytes, as measured.
    static int sizeOf(const QString &model);

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

    void makeRoom(int megabytes);
    std::unique_ptr<Engine> takeLongestUnused();
    void giveBack(const QString &model, Dictionary dictionary, std::unique_ptr<Engine> engine);

    const ModelFolder m_folder;
    const Now m_now;
    mutable std::mutex m_mutex;
    std::map<Key, std::vector<Idle>> m_idle;
    /// Copies lent or being loaded.
    std::map<Key, int> m_lent;
    std::condition_variable m_returned;
    /// Megabytes of all engines, lent or idle.
    int m_loaded = 0;
    /// Pages being read, and when the first of them began.
    int m_pages = 0;
    Clock::time_point m_pageStart;
};

} // namespace recognition
