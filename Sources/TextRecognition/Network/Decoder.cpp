// SPDX-License-Identifier: MIT
#include "Decoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace recognition {

namespace {

/// How much surer what is not a listed word has to be, and what a step costs anything, as the
/// models were tuned for in their own engine.
constexpr float unlistedFactor = 2.25F;
constexpr float stepCost = -0.085F;

/// The certainty of the impossible, and what no listed word may be below in any column.
constexpr float leastCertainty = -20;
constexpr float leastListed = -25.0F / 7;

/// Codes less likely are not followed if likelier ones can be.
constexpr float leastShare = 1e-5F;

/// The likeliest codes that are followed; the beams' widths by the number of codes that a
/// character has so far.
constexpr int followedCodes = 5;
constexpr int widest = 16;

constexpr int widthOf(int length)
{
    return length == 0 ? 5 : length == 1 ? 10 : widest;
}

/// What may follow a column. Where a character shares a column with nothing or its neighbour, the
/// shares are added, but then the same column must not be counted again.
enum Next { Anything, OnlyRepeat, NoRepeat };
constexpr int nextCount = 3;

/// Codes are looked at in groups, the next only if the one before leads nowhere.
enum class Group : std::int8_t { Best, Good, Rest };

float certaintyOf(float share)
{
    static const float leastShareOfAll = std::exp(leastCertainty);
    return (share > leastShareOfAll ? std::log(share) : leastCertainty) + stepCost;
}

constexpr int nowhere = -1;

struct Node
{
    int code = nowhere;
    int id = Alphabet::none;
    /// Codes of a character that is not complete.
    int prefix = 0;
    int previous = nowhere;
    /// Places in the word lists, in the decoder's store.
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

struct Beam
{
    std::array<Node, widest> nodes;
    int size = 0;

    const Node &worst() const
    {
        return *std::min_element(nodes.begin(), nodes.begin() + size,
                                 [](const Node &a, const Node &b) { return a.score < b.score; });
    }
    bool takes(float score, int width) const { return size < width || score > worst().score; }
    void push(const Node &node, int width);
};

void Beam::push(const Node &node, int width)
{
    if (!takes(node.score, width)) {
        return;
    }
    const auto end = nodes.begin() + size;
    const auto same = std::find_if(nodes.begin(), end, [&node](const Node &other) {
        return other.code == node.code && other.hash == node.hash && other.kind == node.kind &&
               other.mayStartWord == node.mayStartWord;
    });
    if (same != end) {
        if (node.score > same->score) {
            *same = node;
        }
    } else if (size < width) {
        nodes[std::size_t(size++)] = node;
    } else {
        const_cast<Node &>(worst()) = node;
    }
}

class Decoder
{
public:
    Decoder(const CodeShares &shares, int nothing, const Alphabet &alphabet,
            const WordLists &lists);
    std::vector<DecodedCharacter> run();

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

    Beam &beam(bool isListed, Next next, int length)
    {
        return m_beams[std::size_t(((isListed ? nextCount : 0) + next) * m_lengths + length)];
    }
    void rankCodes();
    void step(int column);
    void goOn(const Kept *from, const BeamKey &key, Group group);
    void followCode(int code, const Kept *from, const BeamKey &key, Group group);
    void pushPart(const BeamKey &key, Node node, const Node *from, int width);
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
    std::vector<DecodedCharacter> charactersOf(int end) const;

    const CodeShares &m_shares;
    const int m_nothing;
    const Alphabet &m_alphabet;
    const WordLists &m_lists;
    int m_lengths = 1;

    const float *m_column = nullptr;
    std::vector<Group> m_groups;
    std::vector<int> m_best;
    std::vector<int> m_good;
    int m_first = nowhere;
    int m_second = nowhere;

    std::vector<Beam> m_beams;
    std::array<Node, nextCount> m_starts;
    /// Of all columns, and those of the last.
    std::vector<Node> m_nodes;
    std::vector<Kept> m_last;
    std::vector<WordLists::Places> m_places;
};

Decoder::Decoder(const CodeShares &shares, int nothing, const Alphabet &alphabet,
                 const WordLists &lists)
    : m_shares(shares)
    , m_nothing(nothing)
    , m_alphabet(alphabet)
    , m_lists(lists)
    , m_lengths(alphabet.longestCode() + 1)
    , m_groups(std::size_t(shares.codes), Group::Rest)
    , m_beams(std::size_t(2 * nextCount * m_lengths))
    , m_places{lists.start()}
{
    m_nodes.reserve(std::size_t(shares.columns) * 24);
}

void Decoder::rankCodes()
{
    for (const int code : m_best) {
        m_groups[std::size_t(code)] = Group::Rest;
    }
    for (const int code : m_good) {
        m_groups[std::size_t(code)] = Group::Rest;
    }
    std::array<int, followedCodes> top{};
    int count = 0;
    for (int code = 0; code < m_shares.codes; ++code) {
        const float share = m_column[code];
        if (count == followedCodes && share <= m_column[top[followedCodes - 1]]) {
            continue;
        }
        int at = count < followedCodes ? count++ : followedCodes - 1;
        for (; at > 0 && m_column[top[std::size_t(at - 1)]] < share; --at) {
            top[std::size_t(at)] = top[std::size_t(at - 1)];
        }
        top[std::size_t(at)] = code;
    }
    m_first = top[0];
    m_second = count > 1 ? top[1] : nowhere;
    m_best.clear();
    m_good.clear();
    for (int i = 0; i < count; ++i) {
        const int code = top[std::size_t(i)];
        const bool isBest = i == 0 || (i == 1 && m_column[code] >= leastShare) || code == m_nothing;
        (isBest ? m_best : m_good).push_back(code);
    }
    if (std::find(m_best.begin(), m_best.end(), m_nothing) == m_best.end()) {
        m_best.push_back(m_nothing);
    }
    for (const int code : m_best) {
        m_groups[std::size_t(code)] = Group::Best;
    }
    for (const int code : m_good) {
        m_groups[std::size_t(code)] = Group::Good;
    }
}

Node Decoder::after(const Kept *from, int code, int id, float certainty, bool isRepeat) const
{
    const Node *previous = nodeOf(from);
    Node node;
    node.code = code;
    node.id = id;
    node.previous = from ? from->node : nowhere;
    node.certainty = certainty;
    node.score = certainty + (previous ? previous->score : 0);
    node.isRepeat = isRepeat;
    node.hash = previous ? previous->hash : 0;
    if (!isRepeat && code != m_nothing) {
        node.hash = (node.hash ^ std::uint64_t(code + 1)) * 0x9E3779B97F4A7C15U;
    }
    return node;
}

/// For what completes no character: a repeat, nothing, a part of the codes.
void Decoder::pushPart(const BeamKey &key, Node node, const Node *from, int width)
{
    if (key.isListed) {
        if (node.certainty > leastListed) {
            node.kind = from ? from->kind : WordKind::None;
            beam(true, key.next, key.length).push(node, width);
        }
        return;
    }
    const float weighted = node.certainty * unlistedFactor;
    if (weighted >= leastCertainty || node.code == m_nothing) {
        node.score += weighted - node.certainty;
        node.certainty = weighted;
        node.kind = from ? from->kind : WordKind::Unlisted;
        beam(false, key.next, key.length).push(node, width);
    }
}

void Decoder::goOn(const Kept *from, const BeamKey &key, Group group)
{
    if (from) {
        const Node &previous = *nodeOf(from);
        if (m_groups[std::size_t(previous.code)] == group) {
            const auto push = [&](float share, Next next) {
                Node node = after(from, previous.code, previous.id, certaintyOf(share), true);
                node.prefix = previous.prefix;
                pushPart({key.isListed, next, key.length}, node, &previous, widthOf(key.length));
            };
            const float share = m_column[previous.code];
            if (key.next != NoRepeat) {
                push(share, Anything);
            }
            if (key.next == Anything && group == Group::Best && previous.code != m_nothing) {
                push(share + m_column[m_nothing], NoRepeat);
            }
        }
        if (key.next == OnlyRepeat) {
            return;
        }
        if (previous.code != m_nothing && key.length > 0 && group == Group::Best) {
            Node node = after(from, m_nothing, Alphabet::none, certaintyOf(m_column[m_nothing]));
            node.prefix = previous.prefix;
            pushPart({key.isListed, Anything, key.length}, node, &previous, widthOf(key.length));
        }
    }
    if (group == Group::Rest) {
        for (int code = 0; code < m_shares.codes; ++code) {
            if (m_groups[std::size_t(code)] == Group::Rest) {
                followCode(code, from, key, group);
            }
        }
        return;
    }
    for (const int code : group == Group::Best ? m_best : m_good) {
        followCode(code, from, key, group);
    }
}

void Decoder::followCode(int code, const Kept *from, const BeamKey &key, Group group)
{
    const Node *found = nodeOf(from);
    if (found && found->code == code) {
        return;
    }
    const int prefix = found ? found->prefix : 0;
    const bool isNothing = prefix == 0 && code == m_nothing;
    const int next = isNothing ? 0 : m_alphabet.next(prefix, code);
    if (next == Alphabet::none) {
        return;
    }
    const float certainty = certaintyOf(m_column[code]);
    // A column shared with nothing, or between two neighbours.
    const bool isShared = group == Group::Best && code != m_nothing;
    float shared = m_column[code] + m_column[m_nothing];
    if (found && key.next == Anything && found->code != m_nothing &&
        ((found->code == m_first && code == m_second) ||
         (code == m_first && found->code == m_second))) {
        shared += m_column[found->code];
    }
    const int id = isNothing ? Alphabet::none : m_alphabet.characterOf(next);
    if (isNothing || (id != Alphabet::none && certainty >= leastCertainty)) {
        pushCharacter({key.isListed, Anything, 0}, code, id, certainty, from);
        if (isShared) {
            pushCharacter({key.isListed, OnlyRepeat, 0}, code, id, certaintyOf(shared), from);
        }
    }
    if (!isNothing && m_alphabet.goesOn(next)) {
        const auto push = [&](float part, Next follows) {
            Node node = after(from, code, Alphabet::none, part);
            node.prefix = next;
            pushPart({key.isListed, follows, key.length + 1}, node, found, widthOf(key.length + 1));
        };
        push(certainty, Anything);
        if (isShared) {
            push(certaintyOf(shared), OnlyRepeat);
        }
    }
}

void Decoder::pushCharacter(const BeamKey &key, int code, int id, float certainty, const Kept *from)
{
    if (key.isListed) {
        if (certainty > leastListed) {
            pushListed(key, code, id, certainty, from);
        }
        return;
    }
    beam(false, key.next, 0).push(after(from, code, id, certainty * unlistedFactor), widthOf(0));
    if (m_lists.isEmpty() || id == Alphabet::none) {
        return;
    }
    const bool isSpace = id == Alphabet::space;
    if ((isSpace && certainty > leastListed) || (!isSpace && !m_alphabet.character(id).hasBlanks)) {
        // A listed word may start after it. A blank belongs to that word too, and must not make
        // it less sure than it would be after another listed word.
        Node node = after(from, code, id, isSpace ? certainty : certainty * unlistedFactor);
        node.kind = isSpace ? WordKind::None : WordKind::Unlisted;
        pushStart(node, key.next);
    }
}

/// A place where a listed word may start; only the best of a column is kept.
void Decoder::pushStart(Node node, Next next)
{
    Node &best = m_starts[std::size_t(next)];
    if (best.code == nowhere || node.score > best.score) {
        node.mayStartWord = true;
        node.places = 0;
        best = node;
    }
}

int Decoder::lastCharacter(int node) const
{
    while (node != nowhere && (m_nodes[std::size_t(node)].id == Alphabet::none ||
                               m_nodes[std::size_t(node)].isRepeat)) {
        node = m_nodes[std::size_t(node)].previous;
    }
    return node;
}

void Decoder::pushListed(const BeamKey &key, int code, int id, float certainty, const Kept *from)
{
    Beam &listed = beam(true, key.next, 0);
    Beam &unlisted = beam(false, key.next, 0);
    Node node = after(from, code, id, certainty);
    node.kind = WordKind::None;
    if (id == Alphabet::none) {
        listed.push(node, widthOf(0));
        return;
    }
    if (!listed.takes(node.score, widthOf(0)) && !unlisted.takes(node.score, widthOf(0))) {
        return;
    }
    const int at = lastCharacter(node.previous);
    const Node *last = at == nowhere ? nullptr : &m_nodes[std::size_t(at)];
    if (id == Alphabet::space) {
        if (last && last->endsWord) {
            node.kind = last->kind;
            pushStart(node, key.next);
            unlisted.push(node, widthOf(0));
        }
        return;
    }
    if (last && last->mayStartWord && last->id != Alphabet::space &&
        m_alphabet.character(last->id).hasBlanks && m_alphabet.character(id).hasBlanks) {
        return;
    }
    if (last && last->places == nowhere) {
        return;
    }
    bool mayEnd = false;
    WordLists::Places places;
    node.kind = m_lists.follow(m_places[std::size_t(last ? last->places : 0)], id,
                               m_alphabet.character(id), places, mayEnd);
    if (node.kind == WordKind::None) {
        return;
    }
    node.startsWord = !last || last->mayStartWord;
    node.endsWord = mayEnd;
    if (listed.takes(node.score, widthOf(0))) {
        node.places = int(m_places.size());
        m_places.push_back(std::move(places));
        listed.push(node, widthOf(0));
        node.places = nowhere;
    }
    if (mayEnd && !m_alphabet.hasBlanks()) {
        // Another word may follow at once.
        node.endsWord = true;
        pushStart(node, key.next);
        unlisted.push(node, widthOf(0));
    }
}

void Decoder::step(int column)
{
    m_column = m_shares.at(column);
    rankCodes();
    for (Beam &beam : m_beams) {
        beam.size = 0;
    }
    m_starts.fill({});
    if (column == 0) {
        goOn(nullptr, {false, Anything, 0}, Group::Best);
        if (!m_lists.isEmpty()) {
            goOn(nullptr, {true, Anything, 0}, Group::Best);
        }
    } else {
        bool isStuck = true;
        for (const Group group : {Group::Best, Group::Good, Group::Rest}) {
            for (const Kept &kept : m_last) {
                goOn(&kept, kept.key, group);
            }
            for (int length = 0; length < m_lengths; ++length) {
                isStuck = isStuck && beam(false, Anything, length).size == 0 &&
                          beam(true, Anything, length).size == 0;
            }
            if (!isStuck) {
                break;
            }
        }
        for (int next = 0; next < nextCount; ++next) {
            const Node &start = m_starts[std::size_t(next)];
            if (start.code != nowhere) {
                beam(true, Next(next), 0).push(start, widthOf(0));
            }
        }
    }
    m_last.clear();
    for (const bool isListed : {false, true}) {
        for (const Next next : {Anything, OnlyRepeat, NoRepeat}) {
            for (int length = 0; length < m_lengths; ++length) {
                const Beam &from = beam(isListed, next, length);
                for (int i = 0; i < from.size; ++i) {
                    m_last.push_back({{isListed, next, length}, int(m_nodes.size())});
                    m_nodes.push_back(from.nodes[std::size_t(i)]);
                }
            }
        }
    }
}

int Decoder::bestEnd() const
{
    int best = nowhere;
    for (const Kept &kept : m_last) {
        if (kept.key.next == OnlyRepeat || kept.key.length > 0) {
            continue;
        }
        if (kept.key.isListed) {
            const int last = lastCharacter(kept.node);
            if (last == nowhere || (!m_nodes[std::size_t(last)].endsWord &&
                                    m_nodes[std::size_t(last)].id != Alphabet::space)) {
                continue;
            }
        }
        if (best == nowhere ||
            m_nodes[std::size_t(kept.node)].score > m_nodes[std::size_t(best)].score) {
            best = kept.node;
        }
    }
    return best;
}

std::vector<DecodedCharacter> Decoder::charactersOf(int end) const
{
    std::vector<const Node *> path;
    for (int at = end; at != nowhere; at = m_nodes[std::size_t(at)].previous) {
        path.push_back(&m_nodes[std::size_t(at)]);
    }
    std::reverse(path.begin(), path.end());

    std::vector<DecodedCharacter> characters;
    const auto width = path.size();
    for (std::size_t t = 0; t < width;) {
        // What no character is in belongs to the next, or to the last of the line.
        float certainty = 0;
        for (; t < width && path[t]->id == Alphabet::none; ++t) {
            certainty = std::min(certainty, path[t]->certainty);
        }
        if (t == width) {
            if (!characters.empty()) {
                characters.back().certainty = std::min(characters.back().certainty, certainty);
            }
            break;
        }
        const Node &first = *path[t];
        const bool isSpace = first.id == Alphabet::space;
        if (isSpace && !characters.empty() && first.kind != WordKind::None) {
            characters.back().certainty = std::min(characters.back().certainty, certainty);
            certainty = 0;
        }
        DecodedCharacter character{first.id, 0, int(t), 0, first.startsWord, first.kind};
        do {
            // The nothing before a blank counted for the unlisted word before it.
            if (path[t]->certainty < certainty || (isSpace && path[t]->kind == WordKind::None)) {
                certainty = path[t]->certainty;
            }
            ++t;
        } while (t < width && path[t]->isRepeat);
        character.right = int(t);
        character.certainty = certainty;
        characters.push_back(character);
    }
    return characters;
}

std::vector<DecodedCharacter> Decoder::run()
{
    for (int column = 0; column < m_shares.columns; ++column) {
        step(column);
    }
    return charactersOf(bestEnd());
}

} // namespace

std::vector<DecodedCharacter> decode(const CodeShares &shares, int nothing,
                                     const Alphabet &alphabet, const WordLists &lists)
{
    if (shares.columns == 0 || nothing < 0 || nothing >= shares.codes ||
        alphabet.codeCount() > shares.codes) {
        return {};
    }
    return Decoder(shares, nothing, alphabet, lists).run();
}

} // namespace recognition
