// SPDX-License-Identifier: MIT
#include "Decoder.h"

#include "BeamSearch.h"

#include <algorithm>

namespace recognition {

namespace {

std::vector<DecodedCharacter> charactersOf(const std::vector<const Node *> &path)
{
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

} // namespace

std::vector<DecodedCharacter> decode(const CodeShares &shares, int nothing,
                                     const Alphabet &alphabet, const WordLists &lists)
{
    if (shares.columns == 0 || nothing < 0 || nothing >= shares.codes ||
        alphabet.codeCount() > shares.codes) {
        return {};
    }
    BeamSearch search(shares, nothing, alphabet, lists);
    return charactersOf(search.run());
}

} // namespace recognition
