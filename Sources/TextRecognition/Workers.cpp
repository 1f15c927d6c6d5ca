// SPDX-License-Identifier: MIT
#include "Workers.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace recognition {

Workers::Workers(int threads)
    : m_threads(std::max(1, threads))
{
}

void Workers::forEach(std::size_t count, const std::function<void(std::size_t)> &work) const
{
    std::atomic<std::size_t> next = 0;
    const auto takePart = [&] {
        for (std::size_t mine = next++; mine < count; mine = next++) {
            work(mine);
        }
    };
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < std::min(count, std::size_t(m_threads)); ++i) {
        try {
            helpers.emplace_back(takePart);
        } catch (const std::system_error &) {
            // The system has no thread left: those that there are do it all.
            break;
        }
    }
    takePart();
}

} // namespace recognition
