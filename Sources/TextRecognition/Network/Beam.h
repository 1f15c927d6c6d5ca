// SPDX-License-Identifier: MIT
#pragma once

#include "Alphabet.h"
#include "WordLists.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace recognition {

/// The index of no node.
inline constexpr int nowhere = -1;

/// What may follow a column. Where a character shares a column with nothing or its neighbour, the
/// shares are added, but then the same column must not be counted again.
enum class Next : std::uint8_t { Anything, OnlyRepeat, NoRepeat };
inline constexpr int nextCount = 3;

/// What a search takes a column for, and the way there.
struct Node
{
    int code = nowhere;
    /// The character that the code completes.
    int id = Alphabet::none;
    /// Codes of a character that is not complete.
    int prefix = 0;
    /// The node of the column before.
    int previous = nowhere;
    /// The last node before it that completes a character.
    int lastCharacter = nowhere;
    /// Places in the word lists, in the search's store.
    int places = nowhere;
    WordKind kind = WordKind::Unlisted;
    bool mayStartWord = false;
    bool startsWord = false;
    bool endsWord = false;
    bool isRepeat = false;
    float certainty = 0;
    float score = 0;
    /// Of the codes so far; equal ones are equal texts, all but surely.
    std::uint64_t hash = 0;
};

/// The best nodes of one column that may go on alike, in no order.
class Beam
{
public:
    static constexpr int widest = 16;

    void clear() { m_size = 0; }
    bool isEmpty() const { return m_size == 0; }
    const Node *begin() const { return m_nodes.data(); }
    const Node *end() const { return m_nodes.data() + m_size; }

    /// Whether a node of `score` would be among the best `width`, which is the same at each call.
    bool takes(float score, int width) const
    {
        return m_size < width || score > m_nodes[std::size_t(m_worst)].score;
    }
    /// Keeps `node` if it is among the best `width`, of equal texts only the better one.
    void push(const Node &node, int width);

private:
    void findWorst();

    std::array<Node, widest> m_nodes;
    int m_size = 0;
    /// The node with the lowest score; most that are pushed are below it.
    int m_worst = 0;
};

} // namespace recognition
