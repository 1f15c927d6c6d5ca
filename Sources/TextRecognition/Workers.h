// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

namespace recognition {

/// Threads that share the work on a page with the thread that asks. They live as long as their
/// work: starting one takes some hundredths of a millisecond, reading a line some ten milliseconds.
class Workers
{
public:
    /// `threads` in all, the asking one included.
    explicit Workers(int threads);
    int threads() const { return m_threads; }

    /// Calls `work` for 0 to `count` - 1, in this order, on several threads, which all work for the
    /// asking one's effort; returns when all is done. What `work` throws ends the work of all, and
    /// the first of it is thrown here. Several may ask at once: every page has helpers of its own.
    void forEach(std::size_t count, const std::function<void(std::size_t)> &work) const;

private:
    int m_threads;
};

} // namespace recognition
