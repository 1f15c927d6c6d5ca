// SPDX-License-Identifier: MIT
#include "CellDecoder.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace recognition {

namespace {

/// A network puts a letter's peak up to this share of a cell outside it.
constexpr double slack = 0.4;

/// What is less likely counts no less: another letter's cell, then, is not torn.
constexpr float leastShare = 1e-6F;

constexpr float never = -1e30F;

/// The character of a keyboard that looks like `text`.
QString plain(const QString &text)
{
    static const std::map<QString, QString> plainOnes{
        {QStringLiteral("“"), QStringLiteral("\"")}, {QStringLiteral("”"), QStringLiteral("\"")},
        {QStringLiteral("„"), QStringLiteral("\"")}, {QStringLiteral("‘"), QStringLiteral("'")},
        {QStringLiteral("’"), QStringLiteral("'")},  {QStringLiteral("—"), QStringLiteral("-")},
        {QStringLiteral("–"), QStringLiteral("-")}};
    const auto found = plainOnes.find(text);
    return found == plainOnes.end() ? text : found->second;
}

/// Logarithms of shares, a row per character, the last one of what is between characters.
class Emissions
{
public:
    Emissions(const CodeShares &shares, const CellCharacters &characters)
        : m_columns(shares.columns)
        , m_values((characters.size() + 1) * std::size_t(shares.columns + 1), 0)
    {
        for (std::size_t i = 0; i <= characters.size(); ++i) {
            const std::vector<int> &codes =
                i < characters.size() ? characters.codes(i) : characters.blanks();
            float *sums = row(i);
            for (int t = 0; t < m_columns; ++t) {
                float share = leastShare;
                for (const int code : codes) {
                    share += shares.at(t)[code];
                }
                sums[t + 1] = sums[t] + std::log(share);
            }
        }
    }

    /// Sums up to each column.
    const float *row(std::size_t i) const
    {
        return m_values.data() + i * std::size_t(m_columns + 1);
    }

private:
    float *row(std::size_t i) { return m_values.data() + i * std::size_t(m_columns + 1); }

    int m_columns;
    std::vector<float> m_values;
};

struct CellColumns
{
    int first = 0;
    int last = 0;
};

} // namespace

CellCharacters::CellCharacters(const Alphabet &alphabet, int codes, int nothing)
    : m_blanks{nothing}
{
    std::map<QString, std::size_t> known;
    for (int code = 0; code < codes; ++code) {
        const int prefix = code == nothing || code >= alphabet.codeCount() ? Alphabet::none
                                                                           : alphabet.next(0, code);
        const int id = prefix == Alphabet::none ? Alphabet::none : alphabet.characterOf(prefix);
        if (id == Alphabet::none) {
            continue;
        }
        if (id == Alphabet::space) {
            m_blanks.push_back(code);
            continue;
        }
        const QString text = plain(alphabet.character(id).text);
        if (text.size() != 1 || !text.front().isPrint()) {
            continue;
        }
        const auto [found, isNew] = known.try_emplace(text, m_texts.size());
        if (isNew) {
            m_texts.push_back(text);
            m_codes.emplace_back();
        }
        m_codes[found->second].push_back(code);
    }
}

DecodedCells decodeCells(const CodeShares &shares, const std::vector<CellPlace> &cells,
                         const CellCharacters &characters)
{
    const std::size_t count = cells.size();
    const int columns = shares.columns;
    DecodedCells result;
    if (count == 0 || columns == 0 || characters.size() == 0) {
        return result;
    }
    const Emissions emissions(shares, characters);
    const float *blank = emissions.row(characters.size());
    std::vector<CellColumns> windows;
    for (const CellPlace &cell : cells) {
        const double more = slack * (cell.right - cell.left);
        const int first = std::clamp(int(std::floor(cell.left - more)), 0, columns - 1);
        const int last = std::clamp(int(std::ceil(cell.right + more)), first + 1, columns);
        windows.push_back({first, last});
    }

    // The best score of the columns before `t` with all cells before the k-th, and of those from
    // `t` on with it and all after it.
    const auto width = std::size_t(columns + 1);
    std::vector<float> before((count + 1) * width, never);
    std::vector<float> after((count + 1) * width, never);
    std::copy(blank, blank + width, before.begin());
    for (std::size_t k = 0; k < count; ++k) {
        const float *from = before.data() + k * width;
        float *to = before.data() + (k + 1) * width;
        const auto [first, last] = windows[k];
        for (std::size_t c = 0; c < characters.size(); ++c) {
            const float *sums = emissions.row(c);
            float start = never;
            for (int t = first; t < last; ++t) {
                start = std::max(start, from[t] - sums[t]);
                to[t + 1] = std::max(to[t + 1], start + sums[t + 1]);
            }
        }
        for (int t = first + 1; t < columns; ++t) {
            to[t + 1] = std::max(to[t + 1], to[t] + blank[t + 1] - blank[t]);
        }
    }
    for (std::size_t t = 0; t < width; ++t) {
        after[count * width + t] = blank[columns] - blank[t];
    }
    for (std::size_t k = count; k-- > 0;) {
        const float *from = after.data() + (k + 1) * width;
        float *to = after.data() + k * width;
        const auto [first, last] = windows[k];
        for (std::size_t c = 0; c < characters.size(); ++c) {
            const float *sums = emissions.row(c);
            float end = never;
            for (int t = last; t > first; --t) {
                end = std::max(end, from[t] + sums[t]);
                to[t - 1] = std::max(to[t - 1], end - sums[t - 1]);
            }
        }
        for (int t = last - 1; t > 0; --t) {
            to[t - 1] = std::max(to[t - 1], to[t] + blank[t] - blank[t - 1]);
        }
    }

    const float best = before[count * width + std::size_t(columns)];
    result.certainty = double(best) / double(count);
    for (std::size_t k = 0; k < count; ++k) {
        const float *from = before.data() + k * width;
        const float *to = after.data() + (k + 1) * width;
        const auto [first, last] = windows[k];
        std::vector<float> scores(characters.size(), never);
        for (std::size_t c = 0; c < characters.size(); ++c) {
            const float *sums = emissions.row(c);
            float start = never;
            for (int t = first; t < last; ++t) {
                start = std::max(start, from[t] - sums[t]);
                scores[c] = std::max(scores[c], start + sums[t + 1] + to[t + 1]);
            }
            scores[c] -= best;
        }
        const auto c = std::size_t(std::ranges::max_element(scores) - scores.begin());
        const float *sums = emissions.row(c);
        float peak = never;
        for (int t = first; t < last; ++t) {
            peak = std::max(peak, sums[t + 1] - sums[t]);
        }
        result.peaks.push_back(std::exp(peak));
        result.scores.push_back(std::move(scores));
    }
    return result;
}

} // namespace recognition
