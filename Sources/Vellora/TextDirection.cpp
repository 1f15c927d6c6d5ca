// SPDX-License-Identifier: MIT
#include "TextDirection.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {
struct Block
{
    char32_t first;
    char32_t last;
};

constexpr std::array rightToLeftBlocks{
    Block{0x0590, 0x05FF}, // Hebrew
    Block{0x0600, 0x06FF}, // Arabic
    Block{0x0750, 0x077F}, // Arabic Supplement
    Block{0x08A0, 0x08FF}, // Arabic Extended-A
    Block{0xFB50, 0xFDFF}, // Arabic Presentation Forms-A
    Block{0xFE70, 0xFEFF}, // Arabic Presentation Forms-B
};

/// White space and line ends: the separators, tab, the line breaks U+000A to U+000D and U+0085.
/// The zero-width space counts too, as in the platform this set was taken from.
bool isBlank(char32_t scalar)
{
    return QChar::isSpace(scalar) || scalar == 0x200B;
}
} // namespace

bool containsRTL(QStringView text)
{
    const auto first =
        std::ranges::find_if(text, [](QChar unit) { return !isBlank(unit.unicode()); });
    if (first == text.end()) {
        return false;
    }
    // Every blank and every block in question is in the basic plane: half a surrogate pair is
    // neither.
    const char32_t scalar = first->unicode();
    return std::ranges::any_of(rightToLeftBlocks, [scalar](const Block &block) {
        return scalar >= block.first && scalar <= block.last;
    });
}
