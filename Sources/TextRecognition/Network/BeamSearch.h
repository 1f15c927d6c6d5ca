// SPDX-License-Identifier: MIT
#pragma once

#include "Alphabet.h"
#include "Beam.h"
#include "ColumnCodes.h"
#include "Network.h"
#include "WordLists.h"

#include <array>
#include <vector>

namespace recognition {

/// Finds the likeliest way through a line's columns.
///
/// Beams are kept apart by whether they are within listed words, by what may follow, and by how
/// many codes of a character are read, so that sure beginnings do not crowd out the rest.
class BeamSearch
{
public:
    /// All must outlive it; `nothing` and the alphabet's codes are within the shares.
    BeamSearch(const CodeShares &shares, int nothing, const Alphabet &alphabet,
               const WordLists &lists);

    /// The best way, a node per column; empty if there is none. To be called once.
    std::vector<const Node *> run();

private:
    struct BeamKey
    {
        bool isListed;
        Next next;
        int length;
    };
    struct Kept
    {
        BeamKey key;
        int node;
    };

    Beam &beam(const BeamKey &key)
    {
        const int kind = (key.isListed ? nextCount : 0) + int(key.next);
        return m_beams[std::size_t(kind) * std::size_t(m_lengths) + std::size_t(key.length)];
    }
    void step(int column);
    void keep();
    void goOn(const Kept *from, const BeamKey &key);
    void repeat(const Kept &from, const BeamKey &key);
    void followCode(const ColumnCodes::Code &code, const Kept *from, const BeamKey &key);
    void pushPart(const BeamKey &key, Node node, const Node *from);
    void pushCharacter(const BeamKey &key, int code, int id, float certainty, const Kept *from);
    void pushListed(const BeamKey &key, int code, int id, float certainty, const Kept *from);
    void pushStart(Node node, Next next);
    Node after(const Kept *from, int code, int id, float certainty, bool isRepeat = false) const;
    const Node *nodeOf(const Kept *kept) const
    {
        return kept ? &m_nodes[std::size_t(kept->node)] : nullptr;
    }
    int lastCharacter(int node) const;
    int bestEnd() const;

    const CodeShares &m_shares;
    const int m_nothing;
    const Alphabet &m_alphabet;
    const WordLists &m_lists;
    const int m_lengths;

    /// Of the column at hand.
    ColumnCodes m_codes;
    std::vector<Beam> m_beams;
    std::array<Node, nextCount> m_starts;
    /// Of all columns, and those of the last.
    std::vector<Node> m_nodes;
    std::vector<Kept> m_last;
    std::vector<WordLists::Places> m_places;
};

} // namespace recognition
