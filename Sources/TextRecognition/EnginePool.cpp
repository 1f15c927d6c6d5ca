// SPDX-License-Identifier: MIT
#include "EnginePool.h"

#include "Languages.h"
#include "ScriptShape.h"

#include <utility>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace recognition {

namespace {

/// Freed pieces, of which a model has many, would otherwise stay with the process.
void trimHeap()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace

EnginePool::Loan::Loan(EnginePool *pool, QString model, Dictionary dictionary,
                       std::unique_ptr<Engine> engine)
    : m_pool(pool)
    , m_model(std::move(model))
    , m_dictionary(dictionary)
    , m_engine(std::move(engine))
{
}

EnginePool::Loan::Loan(Loan &&other) noexcept = default;

EnginePool::Loan::~Loan()
{
    if (m_engine) {
        m_pool->giveBack(m_model, m_dictionary, std::move(m_engine));
    }
}

EnginePool::Page::Page(EnginePool &pool)
    : m_pool(pool)
{
    const std::lock_guard lock(pool.m_mutex);
    if (pool.m_pages++ == 0) {
        pool.m_pageStart = pool.m_now();
    }
}

EnginePool::Page::~Page()
{
    const std::lock_guard lock(m_pool.m_mutex);
    --m_pool.m_pages;
}

EnginePool::EnginePool(ModelFolder folder, Now now)
    : m_folder(std::move(folder))
    , m_now(std::move(now))
{
}

EnginePool::Loan EnginePool::lend(const QString &model, Dictionary dictionary, IfLent ifLent)
{
    const Key key{model, dictionary};
    {
        std::unique_lock lock(m_mutex);
        std::vector<Idle> &idle = m_idle[key];
        int &lent = m_lent[key];
        if (ifLent == IfLent::Wait) {
            m_returned.wait(lock, [&] { return !idle.empty() || lent == 0; });
        }
        ++lent;
        if (!idle.empty()) {
            std::unique_ptr<Engine> engine = std::move(idle.back().engine);
            idle.pop_back();
            return {this, model, dictionary, std::move(engine)};
        }
    }
    makeRoom(sizeOf(model));
    std::unique_ptr<Engine> engine = Engine::load(m_folder, model, dictionary);
    if (!engine) {
        const std::lock_guard lock(m_mutex);
        m_loaded -= sizeOf(model);
        --m_lent[key];
        m_returned.notify_all();
    }
    return {this, model, dictionary, std::move(engine)};
}

int EnginePool::sizeOf(const QString &model)
{
    return kindOf(Languages::scriptOf(model)) == WritingKind::Chinese ? 45 : 14;
}

void EnginePool::makeRoom(int megabytes)
{
    std::vector<std::unique_ptr<Engine>> dropped;
    {
        const std::lock_guard lock(m_mutex);
        m_loaded += megabytes;
        while (m_loaded > room) {
            std::unique_ptr<Engine> engine = takeLongestUnused();
            if (!engine) {
                break;
            }
            dropped.push_back(std::move(engine));
        }
    }
    if (!dropped.empty()) {
        dropped.clear();
        trimHeap();
    }
}

std::unique_ptr<Engine> EnginePool::takeLongestUnused()
{
    auto longest = m_idle.end();
    for (auto at = m_idle.begin(); at != m_idle.end(); ++at) {
        // Those given back first stand first. Dropping what a page needs again and again would
        // take more time than reading it.
        if (at->second.empty() || (m_pages > 0 && at->second.front().since >= m_pageStart)) {
            continue;
        }
        if (longest == m_idle.end() || at->second.front().since < longest->second.front().since) {
            longest = at;
        }
    }
    if (longest == m_idle.end()) {
        return nullptr;
    }
    std::unique_ptr<Engine> engine = std::move(longest->second.front().engine);
    longest->second.erase(longest->second.begin());
    m_loaded -= sizeOf(longest->first.model);
    return engine;
}

void EnginePool::giveBack(const QString &model, Dictionary dictionary,
                          std::unique_ptr<Engine> engine)
{
    const std::lock_guard lock(m_mutex);
    m_idle[{model, dictionary}].push_back({std::move(engine), m_now()});
    --m_lent[{model, dictionary}];
    m_returned.notify_all();
}

bool EnginePool::dropIdle(std::chrono::milliseconds age)
{
    std::vector<Idle> dropped;
    bool left = false;
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point limit = m_now() - age;
        for (auto &entry : m_idle) {
            std::vector<Idle> &engines = entry.second;
            std::erase_if(engines, [&](Idle &idle) {
                if (idle.since > limit) {
                    return false;
                }
                dropped.push_back(std::move(idle));
                m_loaded -= sizeOf(entry.first.model);
                return true;
            });
            left = left || !engines.empty();
        }
    }
    if (!dropped.empty()) {
        dropped.clear();
        trimHeap();
    }
    return left;
}

std::size_t EnginePool::idleCount() const
{
    const std::lock_guard lock(m_mutex);
    std::size_t count = 0;
    for (const auto &[key, engines] : m_idle) {
        count += engines.size();
    }
    return count;
}

} // namespace recognition
