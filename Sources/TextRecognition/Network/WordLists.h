// SPDX-License-Identifier: MIT
#pragma once

#include "Alphabet.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace recognition {

/// A list of words as a graph of letters: words share their beginnings and ends.
class WordGraph
{
public:
    static constexpr std::int64_t none = -1;
    /// The letter that stands for any word, or any digit, in patterns.
    static constexpr int pattern = 0;

    WordGraph() = default;
    /// The bytes are used as they are, and must stay. Empty if they are not such a list.
    explicit WordGraph(std::span<const char> data);

    bool isEmpty() const { return m_count == 0; }
    /// The edge for `letter` from the node where `edge` ends, or from the start if it is `none`;
    /// `none` if words do not go on like this.
    std::int64_t follow(std::int64_t edge, int letter) const;
    bool endsWord(std::int64_t edge) const;

private:
    std::uint64_t record(std::int64_t edge) const;
    int letterOf(std::uint64_t record) const { return int(record & m_letterMask); }

    /// Not aligned to their size.
    const char *m_edges = nullptr;
    std::int64_t m_count = 0;
    /// Edges of the first node, which are sorted by letter.
    std::int64_t m_firstCount = 0;
    int m_flagBit = 0;
    std::uint64_t m_letterMask = 0;
};

/// What a word may be made of.
enum class WordKind : std::int8_t { None, Punctuation, Unlisted, Number, Listed };

/// A model's words, numbers, and the punctuation around them.
class WordLists
{
public:
    /// A place in a word: within the punctuation before it, in the word, or in that after it.
    struct Place
    {
        /// 0: words, 1: numbers, -1: in the punctuation before.
        int graph = -1;
        bool isAfter = false;
        std::int64_t edge = WordGraph::none;
        std::int64_t punctuation = WordGraph::none;
        bool operator==(const Place &) const = default;
    };
    using Places = std::vector<Place>;

    /// Parts that are not there are empty. The bytes must stay.
    WordLists(std::span<const char> punctuation, std::span<const char> words,
              std::span<const char> numbers);

    bool isEmpty() const;
    /// The places before a word.
    const Places &start() const { return m_start; }
    /// The places after one more character; its kind is `None` if no word goes on like this, and
    /// `mayEnd` is set if one ends here.
    WordKind follow(const Places &from, int id, const Character &character, Places &to,
                    bool &mayEnd) const;
    /// Whether the characters are a word, with punctuation or without.
    bool contains(const std::vector<int> &ids, const Alphabet &alphabet) const;

private:
    void enter(std::int64_t punctuation, int id, const Character &character, Places &to,
               bool &mayEnd, WordKind &kind) const;

    WordGraph m_punctuation;
    std::array<WordGraph, 2> m_graphs;
    Places m_start;
};

} // namespace recognition
