// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// The bytes that a fuzzer made, taken from front to back; what is beyond the end is zero and
/// empty.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
    {
    }

    bool isAtEnd() const { return m_at >= m_bytes.size(); }

    std::uint8_t byte()
    {
        return isAtEnd() ? std::uint8_t(0) : static_cast<std::uint8_t>(m_bytes.at(m_at++));
    }

    std::uint32_t number()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8 | byte();
        }
        return value;
    }

    /// Up to the next line feed, which is passed over.
    QByteArray line()
    {
        const qsizetype found = m_bytes.indexOf('\n', m_at);
        const qsizetype end = found < 0 ? m_bytes.size() : found;
        const QByteArray result = m_bytes.mid(m_at, end - m_at);
        m_at = std::min(end + 1, m_bytes.size());
        return result;
    }

    QString text() { return QString::fromUtf8(line()); }

    QByteArray rest()
    {
        const QByteArray result = m_bytes.mid(m_at);
        m_at = m_bytes.size();
        return result;
    }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

/// Stops a run in which `condition`, a property that holds for every input, does not.
inline void require(bool condition, const char *property)
{
    if (!condition) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}
