// SPDX-License-Identifier: MIT
#include "WordLists.h"

#include "ByteReader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace recognition {

namespace {

constexpr int formatMark = 42;

/// Bits above the letter: the last edge of a node, the direction, the end of a word; then the
/// node where the edge ends.
constexpr int isLast = 0;
constexpr int isBackward = 1;
constexpr int endOfWord = 2;
constexpr int flags = 3;

constexpr std::array kinds{WordKind::Listed, WordKind::Number};

void add(WordLists::Places &places, const WordLists::Place &place)
{
    if (std::find(places.begin(), places.end(), place) == places.end()) {
        places.push_back(place);
    }
}

} // namespace

WordGraph::WordGraph(std::span<const char> data)
{
    ByteReader reader(data);
    const auto mark = reader.value<std::int16_t>();
    const auto letters = reader.value<std::int32_t>();
    const auto count = reader.value<std::int32_t>();
    if (mark != formatMark || letters < 1 || letters > (1 << 24) || count < 1) {
        return;
    }
    const std::span<const char> edges = reader.take(std::size_t(count) * sizeof(std::uint64_t));
    if (reader.failed()) {
        return;
    }
    m_edges = edges.data();
    // As many bits as hold the letters and one more value.
    m_flagBit = std::bit_width(unsigned(letters));
    m_letterMask = (std::uint64_t(1) << unsigned(m_flagBit)) - 1;
    m_count = count;
    while (m_firstCount < m_count) {
        const std::uint64_t edge = record(m_firstCount) >> unsigned(m_flagBit);
        if ((edge >> isBackward & 1U) != 0) {
            break;
        }
        ++m_firstCount;
        if ((edge >> isLast & 1U) != 0) {
            break;
        }
    }
}

std::uint64_t WordGraph::record(std::int64_t edge) const
{
    std::uint64_t value = 0;
    std::memcpy(&value, m_edges + edge * std::int64_t(sizeof value), sizeof value);
    return value;
}

std::int64_t WordGraph::follow(std::int64_t edge, int letter) const
{
    std::int64_t node = 0;
    if (edge != none) {
        node = std::int64_t(record(edge) >> unsigned(m_flagBit + flags));
        if (node == 0) {
            return none;
        }
    }
    if (node == 0) {
        std::int64_t low = 0;
        std::int64_t high = m_firstCount;
        while (low < high) {
            const std::int64_t middle = (low + high) / 2;
            const int at = letterOf(record(middle));
            if (at == letter) {
                return middle;
            }
            if (at < letter) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return none;
    }
    // No node has more edges than letters, with an end of a word and without.
    const std::int64_t last = std::min(m_count, node + 2 * std::int64_t(m_letterMask + 1));
    for (; node < last; ++node) {
        const std::uint64_t at = record(node);
        if (letterOf(at) == letter) {
            return node;
        }
        if ((at >> unsigned(m_flagBit + isLast) & 1U) != 0) {
            break;
        }
    }
    return none;
}

bool WordGraph::endsWord(std::int64_t edge) const
{
    return (record(edge) >> unsigned(m_flagBit + endOfWord) & 1U) != 0;
}

WordLists::WordLists(std::span<const char> punctuation, std::span<const char> words,
                     std::span<const char> numbers)
    : m_punctuation(punctuation)
    , m_graphs{WordGraph(words), WordGraph(numbers)}
{
    // Words stand within punctuation, if only in none.
    const bool hasPatterns =
        !m_punctuation.isEmpty() &&
        m_punctuation.follow(WordGraph::none, WordGraph::pattern) != WordGraph::none;
    if (!m_punctuation.isEmpty()) {
        m_start.push_back({});
    }
    for (int graph = 0; graph < int(m_graphs.size()); ++graph) {
        if (!hasPatterns && !m_graphs[std::size_t(graph)].isEmpty()) {
            m_start.push_back({graph, false, WordGraph::none, WordGraph::none});
        }
    }
}

bool WordLists::isEmpty() const
{
    return m_start.empty();
}

void WordLists::enter(std::int64_t punctuation, int id, const Character &character, Places &to,
                      bool &mayEnd, WordKind &kind) const
{
    const std::int64_t word = m_punctuation.follow(punctuation, WordGraph::pattern);
    for (int graph = 0; word != WordGraph::none && graph < int(m_graphs.size()); ++graph) {
        const WordGraph &words = m_graphs[std::size_t(graph)];
        if (words.isEmpty()) {
            continue;
        }
        const int letter = graph == 1 && character.isDigit ? WordGraph::pattern : id;
        const std::int64_t edge = words.follow(WordGraph::none, letter);
        if (edge != WordGraph::none) {
            add(to, {graph, false, edge, word});
            kind = std::max(kind, kinds[std::size_t(graph)]);
            mayEnd = mayEnd || (words.endsWord(edge) && m_punctuation.endsWord(word));
        }
    }
    const std::int64_t edge = m_punctuation.follow(punctuation, id);
    if (edge != WordGraph::none) {
        add(to, {-1, false, WordGraph::none, edge});
        kind = std::max(kind, WordKind::Punctuation);
        mayEnd = mayEnd || m_punctuation.endsWord(edge);
    }
}

WordKind WordLists::follow(const Places &from, int id, const Character &character, Places &to,
                           bool &mayEnd) const
{
    WordKind kind = WordKind::None;
    to.clear();
    mayEnd = false;
    // Not a letter, but what patterns have in a word's place.
    if (id == WordGraph::pattern) {
        return kind;
    }
    for (const Place &place : from) {
        if (place.graph < 0) {
            enter(place.punctuation, id, character, to, mayEnd, kind);
            continue;
        }
        const WordGraph &words = m_graphs[std::size_t(place.graph)];
        const bool isWithin = place.punctuation != WordGraph::none;
        if (isWithin && (place.isAfter || words.endsWord(place.edge))) {
            const std::int64_t edge = m_punctuation.follow(place.punctuation, id);
            if (edge != WordGraph::none) {
                add(to, {place.graph, true, place.edge, edge});
                kind = std::max(kind, kinds[std::size_t(place.graph)]);
                mayEnd = mayEnd || m_punctuation.endsWord(edge);
            }
        }
        if (place.isAfter) {
            continue;
        }
        const int letter = place.graph == 1 && character.isDigit ? WordGraph::pattern : id;
        const std::int64_t edge = words.follow(place.edge, letter);
        if (edge != WordGraph::none) {
            add(to, {place.graph, false, edge, place.punctuation});
            kind = std::max(kind, kinds[std::size_t(place.graph)]);
            mayEnd = mayEnd || (words.endsWord(edge) &&
                                (!isWithin || m_punctuation.endsWord(place.punctuation)));
        }
    }
    return kind;
}

bool WordLists::contains(const std::vector<int> &ids, const Alphabet &alphabet) const
{
    Places places = m_start;
    bool mayEnd = false;
    for (const int id : ids) {
        Places next;
        if (follow(places, id, alphabet.character(id), next, mayEnd) == WordKind::None) {
            return false;
        }
        places = std::move(next);
    }
    return mayEnd;
}

} // namespace recognition
