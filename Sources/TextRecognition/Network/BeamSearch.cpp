// SPDX-License-Identifier: MIT
#include "BeamSearch.h"

#include "Effort.h"

#include <algorithm>

namespace recognition {

namespace {

/// How much surer what is not a listed word has to be, as the models were tuned for in their own
/// engine.
constexpr float unlistedFactor = 2.25F;

/// What no listed word may be below in any column.
constexpr float leastListed = -25.0F / 7;

/// A column takes some hundredths of a millisecond.
constexpr int columnsBetweenChecks = 16;

/// By the number of codes that a character has so far.
constexpr int widthOf(int length)
{
    return length == 0 ? 5 : length == 1 ? 10 : Beam::widest;
}

} // namespace

BeamSearch::BeamSearch(const CodeShares &shares, int nothing, const Alphabet &alphabet,
                       const WordLists &lists)
    : m_shares(shares)
    , m_nothing(nothing)
    , m_alphabet(alphabet)
    , m_lists(lists)
    , m_lengths(alphabet.longestCode() + 1)
    , m_beams(std::size_t(2 * nextCount * m_lengths))
    , m_places{lists.start()}
{
    m_nodes.reserve(std::size_t(shares.columns) * 24);
}

Node BeamSearch::after(const Kept *from, int code, int id, float certainty, bool isRepeat) const
{
    const Node *previous = nodeOf(from);
    Node node;
    node.code = code;
    node.id = id;
    node.previous = from ? from->node : nowhere;
    node.certainty = certainty;
    node.score = certainty + (previous ? previous->score : 0);
    node.lastCharacter = from ? lastCharacter(from->node) : nowhere;
    node.isRepeat = isRepeat;
    node.hash = previous ? previous->hash : 0;
    if (!isRepeat && code != m_nothing) {
        node.hash = (node.hash ^ std::uint64_t(code + 1)) * 0x9E3779B97F4A7C15U;
    }
    return node;
}

/// For what completes no character: a repeat, nothing, a part of the codes.
void BeamSearch::pushPart(const BeamKey &key, Node node, const Node *from)
{
    const int width = widthOf(key.length);
    if (key.isListed) {
        if (node.certainty > leastListed) {
            node.kind = from ? from->kind : WordKind::None;
            beam(key).push(node, width);
        }
        return;
    }
    const float weighted = node.certainty * unlistedFactor;
    if (weighted >= leastCertainty || node.code == m_nothing) {
        node.score += weighted - node.certainty;
        node.certainty = weighted;
        node.kind = from ? from->kind : WordKind::Unlisted;
        beam(key).push(node, width);
    }
}

void BeamSearch::repeat(const Kept &from, const BeamKey &key)
{
    const Node &previous = *nodeOf(&from);
    const ColumnCodes::Code *code = m_codes.find(previous.code);
    if (!code) {
        return;
    }
    const auto push = [&](float certainty, Next next) {
        Node node = after(&from, previous.code, previous.id, certainty, true);
        node.prefix = previous.prefix;
        pushPart({key.isListed, next, key.length}, node, &previous);
    };
    if (key.next != Next::NoRepeat) {
        push(code->certainty, Next::Anything);
    }
    if (key.next == Next::Anything && previous.code != m_nothing) {
        push(code->withNothing, Next::NoRepeat);
    }
}

void BeamSearch::goOn(const Kept *from, const BeamKey &key)
{
    if (from) {
        repeat(*from, key);
        if (key.next == Next::OnlyRepeat) {
            return;
        }
        const Node &previous = *nodeOf(from);
        if (previous.code != m_nothing && key.length > 0) {
            Node node = after(from, m_nothing, Alphabet::none, m_codes.find(m_nothing)->certainty);
            node.prefix = previous.prefix;
            pushPart({key.isListed, Next::Anything, key.length}, node, &previous);
        }
    }
    for (const ColumnCodes::Code &code : m_codes) {
        followCode(code, from, key);
    }
}

void BeamSearch::followCode(const ColumnCodes::Code &code, const Kept *from, const BeamKey &key)
{
    const Node *found = nodeOf(from);
    if (found && found->code == code.code) {
        return;
    }
    const int prefix = found ? found->prefix : 0;
    const bool isNothing = prefix == 0 && code.code == m_nothing;
    const int next = isNothing ? 0 : m_alphabet.next(prefix, code.code);
    if (next == Alphabet::none) {
        return;
    }
    // A column shared with nothing, or between two neighbours.
    const bool isShared = code.code != m_nothing;
    const bool isBetween = found && key.next == Next::Anything && found->code != m_nothing &&
                           m_codes.areLikeliest(found->code, code.code);
    const float shared = isBetween ? code.withNeighbour : code.withNothing;
    const int id = isNothing ? Alphabet::none : m_alphabet.characterOf(next);
    if (isNothing || (id != Alphabet::none && code.certainty >= leastCertainty)) {
        pushCharacter({key.isListed, Next::Anything, 0}, code.code, id, code.certainty, from);
        if (isShared) {
            pushCharacter({key.isListed, Next::OnlyRepeat, 0}, code.code, id, shared, from);
        }
    }
    if (!isNothing && m_alphabet.goesOn(next)) {
        const auto push = [&](float certainty, Next follows) {
            Node node = after(from, code.code, Alphabet::none, certainty);
            node.prefix = next;
            pushPart({key.isListed, follows, key.length + 1}, node, found);
        };
        push(code.certainty, Next::Anything);
        if (isShared) {
            push(shared, Next::OnlyRepeat);
        }
    }
}

void BeamSearch::pushCharacter(const BeamKey &key, int code, int id, float certainty,
                               const Kept *from)
{
    if (key.isListed) {
        if (certainty > leastListed) {
            pushListed(key, code, id, certainty, from);
        }
        return;
    }
    beam(key).push(after(from, code, id, certainty * unlistedFactor), widthOf(0));
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
void BeamSearch::pushStart(Node node, Next next)
{
    Node &best = m_starts[std::size_t(next)];
    if (best.code == nowhere || node.score > best.score) {
        node.mayStartWord = true;
        node.places = 0;
        best = node;
    }
}

/// The last node up to `node` that completes a character. Walking there over what completes none
/// would take the longer, the longer the line.
int BeamSearch::lastCharacter(int node) const
{
    if (node == nowhere) {
        return nowhere;
    }
    const Node &at = m_nodes[std::size_t(node)];
    return at.id == Alphabet::none || at.isRepeat ? at.lastCharacter : node;
}

void BeamSearch::pushListed(const BeamKey &key, int code, int id, float certainty, const Kept *from)
{
    Beam &listed = beam(key);
    Beam &unlisted = beam({false, key.next, 0});
    Node node = after(from, code, id, certainty);
    node.kind = WordKind::None;
    if (id == Alphabet::none) {
        listed.push(node, widthOf(0));
        return;
    }
    if (!listed.takes(node.score, widthOf(0)) && !unlisted.takes(node.score, widthOf(0))) {
        return;
    }
    const int at = node.lastCharacter;
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
        pushStart(node, key.next);
        unlisted.push(node, widthOf(0));
    }
}

void BeamSearch::step(int column)
{
    m_codes.rank(m_shares.at(column), m_shares.codes, m_nothing);
    for (Beam &beam : m_beams) {
        beam.clear();
    }
    m_starts.fill({});
    if (column == 0) {
        goOn(nullptr, {false, Next::Anything, 0});
        if (!m_lists.isEmpty()) {
            goOn(nullptr, {true, Next::Anything, 0});
        }
    } else {
        for (const Kept &kept : m_last) {
            goOn(&kept, kept.key);
        }
        for (int next = 0; next < nextCount; ++next) {
            const Node &start = m_starts[std::size_t(next)];
            if (start.code != nowhere) {
                beam({true, Next(next), 0}).push(start, widthOf(0));
            }
        }
    }
    keep();
}

void BeamSearch::keep()
{
    m_last.clear();
    for (const bool isListed : {false, true}) {
        for (const Next next : {Next::Anything, Next::OnlyRepeat, Next::NoRepeat}) {
            for (int length = 0; length < m_lengths; ++length) {
                for (const Node &node : beam({isListed, next, length})) {
                    m_last.push_back({{isListed, next, length}, int(m_nodes.size())});
                    m_nodes.push_back(node);
                }
            }
        }
    }
}

int BeamSearch::bestEnd() const
{
    int best = nowhere;
    for (const Kept &kept : m_last) {
        if (kept.key.next == Next::OnlyRepeat || kept.key.length > 0) {
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

std::vector<const Node *> BeamSearch::run()
{
    for (int column = 0; column < m_shares.columns; ++column) {
        if (column % columnsBetweenChecks == 0) {
            checkpoint();
        }
        step(column);
    }
    std::vector<const Node *> path;
    for (int at = bestEnd(); at != nowhere; at = m_nodes[std::size_t(at)].previous) {
        path.push_back(&m_nodes[std::size_t(at)]);
    }
    std::reverse(path.begin(), path.end());
    return path;
}

} // namespace recognition
