// SPDX-License-Identifier: MIT
#include "Grids.h"

#include "AlikeNumbers.h"
#include "Comb.h"
#include "Effort.h"
#include "GridInk.h"
#include "GridShape.h"

#include <cmath>
#include <cstdlib>
#include <numeric>
#include <optional>

namespace recognition {

namespace {

/// Cells of fixed pitch are six tenths of the type's size wide, letters with their edges half to
/// three quarters of it high; Chinese and Japanese ones are as wide as the type.
constexpr double leastWidthOfLetter = 0.45;
constexpr double mostWidthOfLetter = 1.45;

/// A shorter line's letters stand as if in cells by chance.
constexpr int fewestCells = 10;

/// Nor does one of fewer letters join a block; the block's cells show it anyway.
constexpr int fewestOfMember = 4;

/// Widths of cells this much apart may be the same.
constexpr double alikePitch = 0.02;

/// The widest gap between words of one row of a block, in letter heights.
constexpr int widestGap = 4;

/// How much of a line is looked at to guess its cells' width, in letter heights.
constexpr int sampleLength = 40;

/// The most ink at the boundaries of a block's cells, compared with anywhere.
constexpr double mostInkOfBlock = 0.3;

/// Letters of small type touch one another. Where so many lines, each by itself, seem to have cells
/// of one width to within this share of it, there may be more ink: widths that are guessed for
/// lines without cells are spread over the whole range.
constexpr std::size_t fewestAgreeing = 4;
constexpr double agreeingPitch = 0.01;
constexpr double mostInkOfTouchingLine = 0.65;
constexpr double mostInkOfTouchingBlock = 0.62;

/// A line with the ink of its columns.
struct Candidate
{
    const TextLine *line = nullptr;
    std::vector<float> profile;
    /// The cells that the line by itself seems to have; a pitch of 0 if none.
    Comb guess;
    /// Their width, as long as it is not known of which block the line is.
    double pitch = 0;
    bool taken = false;
};

GreyImage inkOfLine(const GreyImage &page, const Box &line, int letterHeight)
{
    const Box box{std::max(0, line.left), std::max(0, line.top - 1),
                  std::min(page.width, line.right), std::min(page.height, line.bottom + 1)};
    return inkOf(page, box, 6 * letterHeight, box.height());
}

/// The cells of a line with this ink if it seems to have any, or a pitch of 0.
Comb guessedCells(std::vector<float> profile, int letterHeight)
{
    profile.resize(std::min(profile.size(), std::size_t(sampleLength * letterHeight)));
    const Comb comb =
        bestComb(profile, {leastWidthOfLetter * letterHeight, mostWidthOfLetter * letterHeight});
    const bool isLong = double(profile.size()) >= fewestCells * comb.pitch;
    return isLong && comb.inkShare <= mostInkOfTouchingLine ? comb : Comb{};
}

/// The ink of several lines in the columns of the page.
std::vector<float> pooled(const std::vector<const Candidate *> &lines, int width)
{
    std::vector<float> sum(std::size_t(width), 0);
    for (const Candidate *line : lines) {
        for (std::size_t i = 0; i < line->profile.size(); ++i) {
            sum[std::size_t(line->line->box.left) + i] += line->profile[i];
        }
    }
    return sum;
}

class Finder
{
public:
    Finder(const GreyImage &page, const std::vector<const TextLine *> &lines)
        : m_page(page)
    {
        for (const TextLine *line : lines) {
            if (!line->isVertical && line->letterHeight > 0 &&
                line->box.width() >= fewestOfMember * line->letterHeight / 2) {
                m_candidates.push_back(
                    {line, columnProfile(inkOfLine(page, line->box, line->letterHeight)), {}});
            }
        }
        std::ranges::sort(m_candidates, {}, [](const Candidate &candidate) {
            return std::pair(candidate.line->box.left, candidate.line->box.top);
        });
        for (std::size_t i = 0; i < m_candidates.size(); ++i) {
            checkpoint();
            Candidate &candidate = m_candidates[i];
            const int letterHeight = candidate.line->letterHeight;
            candidate.guess = guessedCells(candidate.profile, letterHeight);
            if (candidate.guess.pitch == 0 || candidate.guess.inkShare > mostInkOfLine) {
                candidate.guess = guessedCells(profileFrom(i), letterHeight);
            }
            m_guesses.add(candidate.guess.pitch, 1);
        }
        m_guesses.sort();
        for (Candidate &candidate : m_candidates) {
            if (candidate.guess.inkShare <= mostInkOfLine || areCellsOf(candidate.guess.pitch)) {
                candidate.pitch = candidate.guess.pitch;
            }
        }
    }

    std::vector<Grid> run()
    {
        while (const std::optional<Comb> comb = nextComb()) {
            std::vector<const Candidate *> members = take(*comb);
            if (members.empty()) {
                break;
            }
            addBlocks(*comb, std::move(members));
        }
        return std::move(m_grids);
    }

private:
    static bool agrees(const Candidate &candidate, double pitch)
    {
        return std::abs(candidate.guess.pitch - pitch) < agreeingPitch * pitch;
    }

    /// Whether enough lines agree on the width.
    bool areCellsOf(double pitch) const
    {
        return m_guesses.count(pitch, agreeingPitch) >= fewestAgreeing;
    }

    /// The ink of the short line with this number and of what stands right of it in its row.
    std::vector<float> profileFrom(std::size_t number) const
    {
        const Candidate &first = m_candidates[number];
        const Box &row = first.line->box;
        std::vector<float> profile = first.profile;
        for (std::size_t i = number + 1; i < m_candidates.size(); ++i) {
            const Candidate &other = m_candidates[i];
            const Box &box = other.line->box;
            const int gap = box.left - (row.left + int(profile.size()));
            if (gap > widestGap * first.line->letterHeight) {
                // All others stand even further right.
                break;
            }
            if (box.left <= row.left || gap < 0 ||
                2 * verticalOverlap(row, box) < std::min(row.height(), box.height())) {
                continue;
            }
            profile.resize(std::size_t(box.left - row.left), 0);
            profile.insert(profile.end(), other.profile.begin(), other.profile.end());
            if (int(profile.size()) > sampleLength * first.line->letterHeight) {
                break;
            }
        }
        return profile;
    }

    /// The cells that most of what is left seems to be set in, on the page.
    std::optional<Comb> nextComb()
    {
        checkpoint();
        AlikeNumbers widths;
        for (const Candidate &candidate : m_candidates) {
            widths.add(candidate.pitch, double(candidate.profile.size()));
        }
        widths.sort();
        double most = 0;
        double pitch = 0;
        for (const Candidate &guess : m_candidates) {
            const double width = guess.pitch > 0 ? widths.weight(guess.pitch, alikePitch) : 0;
            if (width > most) {
                most = width;
                pitch = guess.pitch;
            }
        }
        if (pitch == 0) {
            return {};
        }
        std::vector<const Candidate *> alike;
        for (const Candidate &candidate : m_candidates) {
            if (std::abs(candidate.pitch - pitch) < alikePitch * pitch) {
                alike.push_back(&candidate);
            }
        }
        const Comb comb = refined(pooled(alike, m_page.width), pitch, alikePitch);
        if (comb.inkShare > (areCellsOf(pitch) ? mostInkOfTouchingLine : mostInkOfLine)) {
            forget(pitch);
            return nextComb();
        }
        return comb;
    }

    void forget(double pitch)
    {
        for (Candidate &candidate : m_candidates) {
            if (std::abs(candidate.pitch - pitch) < alikePitch * pitch) {
                candidate.pitch = 0;
            }
        }
    }

    double shareOf(const Candidate &candidate, const Comb &comb) const
    {
        const double offset = std::fmod(comb.phase - candidate.line->box.left, comb.pitch);
        return inkAtBoundaries(candidate.profile, comb.pitch,
                               offset < 0 ? offset + comb.pitch : offset);
    }

    /// The lines that stand in the cells of `comb`, which are no longer asked for others.
    std::vector<const Candidate *> take(const Comb &comb)
    {
        std::vector<const Candidate *> members;
        for (Candidate &candidate : m_candidates) {
            const double height = candidate.line->letterHeight;
            const bool fits = comb.pitch >= leastWidthOfLetter * height &&
                              comb.pitch <= mostWidthOfLetter * height;
            const double most = agrees(candidate, comb.pitch) && areCellsOf(comb.pitch)
                                    ? mostInkOfTouchingLine
                                    : mostInkOfLine;
            if (!candidate.taken && fits && shareOf(candidate, comb) <= most) {
                candidate.taken = true;
                candidate.pitch = 0;
                members.push_back(&candidate);
            }
        }
        return members;
    }

    void addBlocks(const Comb &comb, std::vector<const Candidate *> members)
    {
        std::sort(members.begin(), members.end(), [](const Candidate *a, const Candidate *b) {
            return a->line->box.top < b->line->box.top;
        });
        std::vector<const Candidate *> block;
        int bottom = 0;
        for (const Candidate *member : members) {
            const Box &box = member->line->box;
            if (!block.empty() && box.top - bottom > mostBlank * comb.pitch) {
                addBlock(comb, block);
                block.clear();
            }
            bottom = block.empty() ? box.bottom : std::max(bottom, box.bottom);
            block.push_back(member);
        }
        addBlock(comb, block);
    }

    void addBlock(const Comb &comb, const std::vector<const Candidate *> &block)
    {
        if (block.empty()) {
            return;
        }
        const Comb own = refined(pooled(block, m_page.width), comb.pitch, alikePitch / 10);
        const auto agreeing = std::size_t(std::ranges::count_if(
            block, [&own](const Candidate *each) { return agrees(*each, own.pitch); }));
        if (own.inkShare > (agreeing >= fewestAgreeing ? mostInkOfTouchingBlock : mostInkOfBlock)) {
            return;
        }
        std::vector<const TextLine *> lines;
        for (const Candidate *candidate : block) {
            lines.push_back(candidate->line);
        }
        if (const std::optional<Grid> grid = gridOf(m_page, own, lines)) {
            m_grids.push_back(*grid);
        }
    }

    const GreyImage &m_page;
    /// From the left.
    std::vector<Candidate> m_candidates;
    /// The widths of the cells that each by itself seems to have.
    AlikeNumbers m_guesses;
    std::vector<Grid> m_grids;
};

} // namespace

std::vector<Grid> findGrids(const GreyImage &page, const std::vector<const TextLine *> &lines)
{
    return Finder(page, lines).run();
}

} // namespace recognition
