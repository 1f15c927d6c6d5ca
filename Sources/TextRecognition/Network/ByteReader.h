// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace recognition {

/// Takes values off the front of trained data, which is little-endian throughout. Past the end, or
/// after a size that cannot be, everything is zero or empty and `failed` tells so.
class ByteReader
{
public:
    explicit ByteReader(std::span<const char> bytes)
        : m_bytes(bytes)
    {
    }

    template <typename T>
    T value()
    {
        static_assert(std::is_arithmetic_v<T>);
        T result{};
        const std::span<const char> from = take(sizeof(T));
        if (!from.empty()) {
            std::memcpy(&result, from.data(), sizeof(T));
        }
        return result;
    }

    /// The next `count` bytes, or none if there are fewer.
    std::span<const char> take(std::size_t count)
    {
        if (m_failed || count > m_bytes.size()) {
            m_failed = true;
            return {};
        }
        const std::span<const char> taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }

    /// A text after its length.
    std::string_view text()
    {
        const std::span<const char> bytes = take(value<std::uint32_t>());
        return {bytes.data(), bytes.size()};
    }

    void fail() { m_failed = true; }
    bool failed() const { return m_failed; }

private:
    std::span<const char> m_bytes;
    bool m_failed = false;
};

} // namespace recognition
