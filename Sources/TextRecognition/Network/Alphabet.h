// SPDX-License-Identifier: MIT
#pragma once

#include "ByteReader.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace recognition {

/// A character of a model; ligatures and letters with marks may be one.
struct Character
{
    QString text;
    bool isDigit = false;
    /// Whether its script has blanks between words.
    bool hasBlanks = true;
};

/// The characters that a model knows, and the codes that its network gives for them: one for most,
/// several in a row for the characters of Chinese and the syllables of Korean.
class Alphabet
{
public:
    static constexpr int space = 0;
    static constexpr int none = -1;

    /// Nothing if one is damaged or both do not fit each other.
    static std::optional<Alphabet> read(std::span<const char> characters,
                                        std::span<const char> codes);

    const Character &character(int id) const { return m_characters[std::size_t(id)]; }
    int size() const { return int(m_characters.size()); }
    /// One more than the largest code.
    int codeCount() const { return m_codeCount; }
    /// The most codes that a character has.
    int longestCode() const { return m_longestCode; }
    /// Whether words are told by blanks alone.
    bool hasBlanks() const { return m_hasBlanks; }
    /// The characters of `text`, longest first; nothing if one is not in the alphabet.
    std::optional<std::vector<int>> split(const QString &text) const;

    /// A beginning of codes, 0 the empty one; `none` if no character's codes go on like this.
    int next(int prefix, int code) const;
    /// The character whose codes these are, or `none`.
    int characterOf(int prefix) const { return m_prefixes[std::size_t(prefix)].character; }
    /// Whether longer codes begin like this.
    bool goesOn(int prefix) const { return m_prefixes[std::size_t(prefix)].count > 0; }

private:
    struct Prefix
    {
        int character = none;
        /// Where its continuations stand in `m_nexts`, sorted by code.
        int first = 0;
        int count = 0;
    };
    struct Next
    {
        int code;
        int prefix;
    };

    bool readCharacters(std::span<const char> data);
    bool readCodes(std::span<const char> data);

    std::vector<Character> m_characters;
    std::vector<Prefix> m_prefixes;
    std::vector<Next> m_nexts;
    /// By code, what follows the empty beginning: most that are asked for.
    std::vector<int> m_firsts;
    int m_codeCount = 0;
    int m_longestCode = 1;
    bool m_hasBlanks = true;
};

} // namespace recognition
