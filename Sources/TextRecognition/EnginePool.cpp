// SPDX-License-Identifier: MIT
#include "EnginePool.h"

#include <utility>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace recognition {

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

EnginePool::EnginePool(ModelFolder folder, Now now)
    : m_folder(std::move(folder))
    , m_now(std::move(now))
{
}

EnginePool::Loan EnginePool::lend(const QString &model, Dictionary dictionary)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_idle.find({model, dictionary});
        if (found != m_idle.end() && !found->second.empty()) {
            std::unique_ptr<Engine> engine = std::move(found->second.back().engine);
            found->second.pop_back();
            return {this, model, dictionary, std::move(engine)};
        }
    }
    return {this, model, dictionary, Engine::load(m_folder, model, dictionary)};
}

void EnginePool::giveBack(const QString &model, Dictionary dictionary,
                          std::unique_ptr<Engine> engine)
{
    const std::lock_guard lock(m_mutex);
    m_idle[{model, dictionary}].push_back({std::move(engine), m_now()});
}

bool EnginePool::dropIdle(std::chrono::milliseconds age)
{
    std::vector<Idle> dropped;
    bool left = false;
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point limit = m_now() - age;
        for (auto &[key, engines] : m_idle) {
            std::erase_if(engines, [&](Idle &idle) {
                if (idle.since > limit) {
                    return false;
                }
                dropped.push_back(std::move(idle));
                return true;
            });
            left = left || !engines.empty();
        }
    }
    if (!dropped.empty()) {
        dropped.clear();
#if defined(__GLIBC__)
        // The models' many small pieces would otherwise stay with the process.
        malloc_trim(0);
#endif
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
