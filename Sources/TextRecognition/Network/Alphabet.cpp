// SPDX-License-Identifier: MIT
#include "Alphabet.h"

#include <QList>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// The property of a digit, in the characters' bits.
constexpr int digit = 8;

/// The characters with a meaning of their own, after the space: parts of ligatures, rubbish.
constexpr int firstOrdinary = 3;

/// Longer codes are a damaged file; so are larger ones.
constexpr int mostCodes = 9;
constexpr int largestCode = 1 << 16;
constexpr std::uint32_t mostCharacters = 1U << 17U;

bool writesWithoutBlanks(const QString &script)
{
    return script == "Han"_L1 || script == "Hangul"_L1 || script == "Hiragana"_L1 ||
           script == "Katakana"_L1 || script == "Thai"_L1;
}

} // namespace

bool Alphabet::readCharacters(std::span<const char> data)
{
    const QList<QByteArray> lines =
        QByteArray::fromRawData(data.data(), qsizetype(data.size())).split('\n');
    bool isNumber = false;
    const qsizetype count = lines.first().trimmed().toInt(&isNumber);
    if (!isNumber || count < firstOrdinary || lines.size() <= count) {
        return false;
    }
    for (qsizetype i = 1; i <= count; ++i) {
        const QList<QByteArray> fields = lines[i].simplified().split(' ');
        if (fields.size() < 3) {
            return false;
        }
        Character character;
        character.isDigit = (fields[1].toInt(nullptr, 16) & digit) != 0;
        // After the properties may stand measures, which have commas.
        const QString script = QString::fromLatin1(fields.value(fields[2].contains(',') ? 3 : 2));
        character.hasBlanks = !writesWithoutBlanks(script);
        // Korean has words with blanks between them, though its characters stand alone.
        m_hasBlanks =
            m_hasBlanks && script != "Han"_L1 && script != "Katakana"_L1 && script != "Thai"_L1;
        character.text = i == 1               ? u" "_s
                         : i <= firstOrdinary ? QString()
                                              : QString::fromUtf8(fields[0]);
        m_characters.push_back(character);
    }
    return true;
}

bool Alphabet::readCodes(std::span<const char> data)
{
    ByteReader reader(data);
    const auto count = reader.value<std::uint32_t>();
    if (count > mostCharacters) {
        return false;
    }
    std::vector<std::map<int, int>> nexts(1);
    std::vector<int> characters{none};
    for (std::uint32_t id = 0; id < count; ++id) {
        reader.value<std::int8_t>();
        const auto length = reader.value<std::int32_t>();
        if (length < 1 || length > mostCodes) {
            return false;
        }
        m_longestCode = std::max(m_longestCode, int(length));
        int prefix = 0;
        for (int i = 0; i < length; ++i) {
            const auto code = reader.value<std::int32_t>();
            if (reader.failed() || code < 0 || code > largestCode) {
                return false;
            }
            m_codeCount = std::max(m_codeCount, code + 1);
            const auto [at, isNew] =
                nexts[std::size_t(prefix)].try_emplace(code, int(nexts.size()));
            prefix = at->second;
            if (isNew) {
                nexts.emplace_back();
                characters.push_back(none);
            }
        }
        // Of several with the same codes the last counts.
        if (id < m_characters.size()) {
            characters[std::size_t(prefix)] = int(id);
        }
    }
    for (std::size_t i = 0; i < nexts.size(); ++i) {
        m_prefixes.push_back({characters[i], int(m_nexts.size()), int(nexts[i].size())});
        for (const auto &[code, prefix] : nexts[i]) {
            m_nexts.push_back({code, prefix});
        }
    }
    m_firsts.assign(std::size_t(m_codeCount), none);
    for (const auto &[code, prefix] : nexts.front()) {
        m_firsts[std::size_t(code)] = prefix;
    }
    return !reader.failed();
}

std::optional<Alphabet> Alphabet::read(std::span<const char> characters,
                                       std::span<const char> codes)
{
    Alphabet alphabet;
    if (!alphabet.readCharacters(characters) || !alphabet.readCodes(codes)) {
        return std::nullopt;
    }
    return alphabet;
}

int Alphabet::next(int prefix, int code) const
{
    if (prefix == 0) {
        return code >= 0 && code < m_codeCount ? m_firsts[std::size_t(code)] : none;
    }
    const Prefix &from = m_prefixes[std::size_t(prefix)];
    const auto begin = m_nexts.begin() + from.first;
    const auto end = begin + from.count;
    const auto at =
        std::lower_bound(begin, end, code, [](const Next &n, int c) { return n.code < c; });
    return at != end && at->code == code ? at->prefix : none;
}

std::optional<std::vector<int>> Alphabet::split(const QString &text) const
{
    std::vector<int> ids;
    qsizetype at = 0;
    while (at < text.size()) {
        int best = none;
        qsizetype length = 0;
        for (int id = firstOrdinary; id < size(); ++id) {
            const QString &candidate = character(id).text;
            if (candidate.size() > length && QStringView(text).mid(at).startsWith(candidate)) {
                best = id;
                length = candidate.size();
            }
        }
        if (best == none) {
            return std::nullopt;
        }
        ids.push_back(best);
        at += length;
    }
    return ids;
}

} // namespace recognition
