// SPDX-License-Identifier: MIT
#pragma once

#include "Alphabet.h"
#include "Network.h"

#include <QString>

#include <vector>

namespace recognition {

/// The characters that may stand in a cell, and the codes of a model that mean each of them: of
/// typographic quotation marks and dashes those on a keyboard.
class CellCharacters
{
public:
    CellCharacters(const Alphabet &alphabet, int codes, int nothing);

    std::size_t size() const { return m_texts.size(); }
    const QString &text(std::size_t index) const { return m_texts[index]; }
    const std::vector<int> &codes(std::size_t index) const { return m_codes[index]; }
    /// Codes of what stands between characters.
    const std::vector<int> &blanks() const { return m_blanks; }

private:
    std::vector<QString> m_texts;
    std::vector<std::vector<int>> m_codes;
    std::vector<int> m_blanks;
};

/// Where a cell stands, in columns of a network's result.
struct CellPlace
{
    double left = 0;
    double right = 0;
};

/// What a network says of the cells of a line.
struct DecodedCells
{
    /// Of each cell and character, the logarithm of how much less likely the line is with it than
    /// as the network reads it most surely.
    std::vector<std::vector<float>> scores;
    /// Of each cell, how likely the likeliest character is in its best column, from 0 to 1.
    std::vector<float> peaks;
    /// The logarithm of how likely the likeliest reading is, per cell.
    double certainty = 0;
};

/// How likely each character is in each of `cells`, from the left, each of which holds one.
DecodedCells decodeCells(const CodeShares &shares, const std::vector<CellPlace> &cells,
                         const CellCharacters &characters);

} // namespace recognition
