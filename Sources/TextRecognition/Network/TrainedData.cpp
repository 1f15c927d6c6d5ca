// SPDX-License-Identifier: MIT
#include "TrainedData.h"

#include <QFile>

#include <algorithm>
#include <cstdint>

namespace recognition {

namespace {

/// A file has a count, as many offsets (-1: absent), then the parts in their order. Known ones
/// have up to 24.
constexpr std::uint32_t mostParts = 64;

} // namespace

TrainedData TrainedData::read(const QString &path, bool withWords)
{
    TrainedData data;
    QFile file(path);
    std::uint32_t count = 0;
    if (!file.open(QIODevice::ReadOnly) ||
        file.read(reinterpret_cast<char *>(&count), sizeof count) != sizeof count ||
        count <= Network || count > mostParts) {
        return data;
    }
    std::vector<std::int64_t> offsets(count);
    const auto table = qint64(count) * qint64(sizeof(std::int64_t));
    if (file.read(reinterpret_cast<char *>(offsets.data()), table) != table) {
        return data;
    }
    for (int part = Network; part <= Codes && part < int(count); ++part) {
        const bool isWords = part == Punctuation || part == Words || part == Numbers;
        const std::int64_t start = offsets[std::size_t(part)];
        if (start < 0 || (isWords && !withWords)) {
            continue;
        }
        std::int64_t end = file.size();
        for (const std::int64_t other : offsets) {
            if (other > start) {
                end = std::min(end, other);
            }
        }
        if (start >= end || !file.seek(start)) {
            continue;
        }
        std::vector<char> &bytes = data.m_parts[std::size_t(part - Network)];
        bytes.resize(std::size_t(end - start));
        if (file.read(bytes.data(), end - start) != end - start) {
            bytes.clear();
        }
    }
    return data;
}

std::span<const char> TrainedData::part(Part part) const
{
    return m_parts[std::size_t(part - Network)];
}

void TrainedData::drop(Part part)
{
    m_parts[std::size_t(part - Network)] = {};
}

} // namespace recognition
