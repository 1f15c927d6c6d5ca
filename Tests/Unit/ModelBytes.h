// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <map>
#include <span>
#include <string_view>
#include <vector>

/// Writes what trained data is made of.
class ByteWriter
{
public:
    template <typename T>
    ByteWriter &put(T value)
    {
        std::array<char, sizeof(T)> raw{};
        std::memcpy(raw.data(), &value, sizeof(T));
        appendBytes(raw);
        return *this;
    }
    ByteWriter &text(std::string_view value)
    {
        put(std::uint32_t(value.size()));
        appendBytes(value);
        return *this;
    }
    ByteWriter &append(const ByteWriter &other)
    {
        appendBytes(other.m_bytes);
        return *this;
    }
    std::span<const char> bytes() const { return m_bytes; }

private:
    // One by one: GCC 12 takes what inserting them together does for writing past the end.
    template <typename Bytes>
    void appendBytes(const Bytes &bytes)
    {
        for (const char byte : bytes) {
            m_bytes.push_back(byte);
        }
    }

    std::vector<char> m_bytes;
};

/// A list of words, each of letters, as a graph.
inline ByteWriter wordGraph(const std::vector<std::vector<int>> &words, int letters)
{
    struct Edge
    {
        std::size_t to = 0;
        bool endsWord = false;
    };
    std::vector<std::map<int, Edge>> nodes(1);
    for (const std::vector<int> &word : words) {
        std::size_t node = 0;
        for (std::size_t i = 0; i < word.size(); ++i) {
            const bool isNew = !nodes[node].contains(word[i]);
            if (isNew) {
                nodes[node][word[i]].to = nodes.size();
                nodes.emplace_back();
            }
            Edge &edge = nodes[node][word[i]];
            edge.endsWord = edge.endsWord || i + 1 == word.size();
            node = edge.to;
        }
    }
    std::vector<std::uint64_t> starts;
    std::uint64_t count = 0;
    for (const auto &node : nodes) {
        starts.push_back(node.empty() ? 0 : count);
        count += node.size();
    }
    const int flagBit = std::bit_width(unsigned(letters));
    ByteWriter graph;
    graph.put(std::int16_t(42)).put(std::int32_t(letters)).put(std::int32_t(count));
    for (const auto &node : nodes) {
        std::size_t left = node.size();
        for (const auto &[letter, edge] : node) {
            const std::uint64_t flags = (--left == 0 ? 1U : 0U) | (edge.endsWord ? 4U : 0U);
            graph.put(std::uint64_t(letter) | flags << flagBit | starts[edge.to] << (flagBit + 3));
        }
    }
    return graph;
}

/// A model's characters: each line its text, properties and script.
inline QByteArray characterList(const QStringList &lines)
{
    const QStringList all =
        QStringList{QStringLiteral("NULL 0 Common"), QStringLiteral("Joined 0 Latin"),
                    QStringLiteral("|Broken|0|1 0 Common")} +
        lines;
    return QByteArray::number(all.size()) + '\n' + all.join(QLatin1Char('\n')).toUtf8() + '\n';
}

/// The codes of each character.
inline ByteWriter codeList(const std::vector<std::vector<int>> &codes)
{
    ByteWriter list;
    list.put(std::uint32_t(codes.size()));
    for (const std::vector<int> &one : codes) {
        list.put(std::int8_t(1)).put(std::int32_t(one.size()));
        for (const int code : one) {
            list.put(std::int32_t(code));
        }
    }
    return list;
}
