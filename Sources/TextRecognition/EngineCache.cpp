// SPDX-License-Identifier: MIT
#include "EngineCache.h"

#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace recognition {

namespace {

/// More than what reading takes and frees again and again: with 1 MB it took a tenth longer, with
/// 8 MB no longer than with the library's own.
constexpr int mostHeapEnd = 8 << 20;

/// While models are freed, which leaves their heaps' ends empty: the library's own, of mallopt(3).
constexpr int leastHeapEnd = 128 << 10;

/// How large the end of a thread's heap may be, in bytes, before the GNU C library gives it back.
/// It raises that itself to twice the largest block that was freed, unless it is set: 34 MB stayed
/// after a page that every model had tried.
void keepHeapEndsBelow(int size)
{
#if defined(__GLIBC__)
    mallopt(M_TRIM_THRESHOLD, size);
    mallopt(M_MMAP_THRESHOLD, mostHeapEnd);
#endif
}

/// Freed pieces, of which a model has many, would otherwise stay with the process.
void trimHeap()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace

EngineCache::EngineCache(ModelFolder folder, Now now)
    : m_folder(std::move(folder))
    , m_now(std::move(now))
{
    keepHeapEndsBelow(mostHeapEnd);
}

std::shared_ptr<const Engine> EngineCache::engine(const QString &model, Dictionary dictionary)
{
    const Key key{model, dictionary};
    std::shared_ptr<Entry> entry;
    {
        const std::lock_guard lock(m_mutex);
        std::shared_ptr<Entry> &found = m_entries[key];
        if (!found) {
            found = std::make_shared<Entry>();
        }
        found->used = m_now();
        entry = found;
    }
    {
        const std::lock_guard loading(entry->mutex);
        if (!entry->engine) {
            entry->engine = Engine::load(m_folder, model, dictionary);
        }
        if (entry->engine) {
            return entry->engine;
        }
    }
    // Asked for again, it may have been installed.
    const std::lock_guard lock(m_mutex);
    const auto at = m_entries.find(key);
    if (at != m_entries.end() && at->second == entry) {
        m_entries.erase(at);
    }
    if (const std::optional<ModelFile> file = m_folder.file(model)) {
        m_unreadable[model] = *file;
        throw UnreadableModel(model);
    }
    return nullptr;
}

QStringList EngineCache::readable() const
{
    QStringList models = m_folder.installed();
    models.removeIf([this](const QString &model) { return !has(model); });
    return models;
}

bool EngineCache::has(const QString &model) const
{
    const std::optional<ModelFile> file = m_folder.file(model);
    const std::lock_guard lock(m_mutex);
    const auto found = m_unreadable.find(model);
    return file && (found == m_unreadable.end() || found->second != *file);
}

QStringList EngineCache::unreadable() const
{
    QStringList models = m_folder.installed();
    models.removeIf([this](const QString &model) { return has(model); });
    return models;
}

bool EngineCache::Entry::isFree(Clock::time_point usedBefore) const
{
    const std::unique_lock loaded(mutex, std::try_to_lock);
    return loaded && used <= usedBefore && engine.use_count() <= 1;
}

bool EngineCache::dropIdle(std::chrono::milliseconds age)
{
    std::vector<std::shared_ptr<Entry>> dropped;
    bool isAnyLeft = false;
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point limit = m_now() - age;
        for (auto at = m_entries.begin(); at != m_entries.end();) {
            const std::shared_ptr<Entry> &entry = at->second;
            // Who waits for it to be loaded has the entry too.
            if (entry.use_count() > 1 || !entry->isFree(limit)) {
                isAnyLeft = true;
                ++at;
            } else {
                dropped.push_back(entry);
                at = m_entries.erase(at);
            }
        }
    }
    if (!dropped.empty()) {
        keepHeapEndsBelow(leastHeapEnd);
        dropped.clear();
        keepHeapEndsBelow(mostHeapEnd);
        trimHeap();
    }
    return isAnyLeft;
}

std::size_t EngineCache::count() const
{
    const std::lock_guard lock(m_mutex);
    std::size_t count = 0;
    for (const auto &[key, entry] : m_entries) {
        const std::unique_lock loaded(entry->mutex, std::try_to_lock);
        count += loaded && entry->engine ? 1 : 0;
    }
    return count;
}

} // namespace recognition
