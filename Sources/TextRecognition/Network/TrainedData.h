// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <span>
#include <vector>

namespace recognition {

/// The parts of a `.traineddata` file that reading lines takes.
class TrainedData
{
public:
    /// As numbered in the file.
    enum Part { Network = 17, Punctuation, Words, Numbers, Characters, Codes };

    /// Reads a file; without its word lists if not `withWords`. What is missing, or stands outside
    /// the file, is empty.
    static TrainedData read(const QString &path, bool withWords);

    /// Stays where it is when the data is moved.
    std::span<const char> part(Part part) const;
    void drop(Part part);

private:
    std::array<std::vector<char>, Codes - Network + 1> m_parts;
};

} // namespace recognition
