// SPDX-License-Identifier: MIT
#include "Grids.h"

#include "Comb.h"
#include "GridInk.h"

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

/// The most ink at the boundaries of a line's cells, of a block's, compared with anywhere.
constexpr double mostInkOfLine = 0.5;
constexpr double mostInkOfBlock = 0.3;

/// Rows of a block, in cell widths: bitmap type is set as close as one and a half, editors set it
/// as wide as three.
constexpr double leastRow = 1.4;
constexpr double mostRow = 3.4;

/// The most blank rows within a block.
constexpr int mostBlankRows = 3;

/// The most ink at the boundaries of cells left and right of its lines, where there may be nothing
/// but a row of `+` that touch.
constexpr double mostInkAside = 0.7;

/// The most ink where one row ends and the next begins, of a block and of two rows alone.
constexpr double mostInkOfRows = 0.35;
constexpr double mostInkOfTwoRows = 0.2;

/// What is fainter than this share of a block's usual ink counts as background.
constexpr double faintest = 0.2;

/// Rows of whole pixels may have so much more ink at their boundaries.
constexpr double wholeRows = 0.02;

/// Cells whose far end is off by less than this many pixels if they are whole pixels wide are so.
constexpr double wholeDrift = 1;

/// The fewest characters that a block has.
constexpr int fewestCharacters = 16;

/// A line with the ink of its columns.
struct Candidate
{
    const TextLine *line = nullptr;
    std::vector<float> profile;
    double pitch = 0;
    bool taken = false;
};

GreyImage inkOfLine(const GreyImage &page, const Box &line, int letterHeight)
{
    const Box box{std::max(0, line.left), std::max(0, line.top - 1),
                  std::min(page.width, line.right), std::min(page.height, line.bottom + 1)};
    return inkOf(page, box, 6 * letterHeight, box.height());
}

/// The width of the cells of a line with this ink if it seems to have any.
double guessedPitch(std::vector<float> profile, int letterHeight)
{
    profile.resize(std::min(profile.size(), std::size_t(sampleLength * letterHeight)));
    const Comb comb =
        bestComb(profile, {leastWidthOfLetter * letterHeight, mostWidthOfLetter * letterHeight});
    const bool isLong = double(profile.size()) >= fewestCells * comb.pitch;
    return isLong && comb.inkShare <= mostInkOfLine ? comb.pitch : 0;
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

/// The rows and columns of a block.
class BlockShape
{
public:
    BlockShape(const GreyImage &page, const Comb &comb, const std::vector<const TextLine *> &lines)
        : m_comb(comb)
        , m_box(lines.front()->box)
    {
        for (const TextLine *line : lines) {
            m_box.unite(line->box);
        }
        const int aside = int(std::lround(mostBlankColumns * comb.pitch));
        const int above = int(std::lround(mostBlankRows * mostRow * comb.pitch));
        m_region = {std::max(0, m_box.left - aside), std::max(0, m_box.top - above),
                    std::min(page.width, m_box.right + aside),
                    std::min(page.height, m_box.bottom + above)};
        m_ink = inkOf(page, m_region, int(8 * comb.pitch), int(2 * comb.pitch));
    }

    std::optional<Grid> grid()
    {
        const int above = m_box.top - m_region.top;
        const std::vector<float> profile = rowProfile(cropped(m_ink, inRegion(m_box)));
        Comb rows{double(m_box.height() + 2), m_box.height() + 1.0, 0};
        if (m_box.height() > mostRow * m_comb.pitch) {
            rows = bestComb(profile, {leastRow * m_comb.pitch, mostRow * m_comb.pitch});
        } else {
            rows = shortBlock(profile);
        }
        // Rows of whole pixels, as most are, are cut at the same pixel all.
        const Comb whole = bestPhase(profile, std::round(rows.pitch));
        if (whole.inkShare <= rows.inkShare + wholeRows) {
            rows = whole;
        }
        if (rows.inkShare > mostInkOfRows) {
            return {};
        }
        rows.phase += above;
        return fill(rows);
    }

private:
    Box inRegion(const Box &box) const
    {
        return {box.left - m_region.left, box.top - m_region.top, box.right - m_region.left,
                box.bottom - m_region.top};
    }

    /// One row, or two of them.
    Comb shortBlock(const std::vector<float> &profile) const
    {
        const double height = double(profile.size());
        if (height > 2 * leastRow * m_comb.pitch) {
            const Comb two =
                bestComb(profile, {std::max(leastRow * m_comb.pitch, 0.42 * height), 0.7 * height});
            if (two.inkShare < mostInkOfTwoRows) {
                return two;
            }
        }
        return {height + 2, height + 1, 0};
    }

    /// What is known of a cell of the region.
    struct Cells
    {
        int firstRow = 0;
        int lastRow = 0;
        int firstColumn = 0;
        int lastColumn = 0;
    };

    Box cell(const Comb &rows, int row, int column) const
    {
        const double left = m_left + column * m_comb.pitch;
        const double top = rows.phase + row * rows.pitch;
        const double side = blankSide * m_comb.pitch;
        return {std::max(0, int(std::floor(left + side))), std::max(0, int(std::lround(top))),
                std::min(m_ink.width, int(std::ceil(left + m_comb.pitch - side))),
                std::min(m_ink.height, int(std::lround(top + rows.pitch)))};
    }

    int peak(const Box &box) const
    {
        int most = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                most = std::max<int>(most, m_ink.at(x, y));
            }
        }
        return most;
    }

    /// Whether what stands in `box`, a part of the region, stands in cells.
    bool isInCells(const Comb &rows, const Box &box, double mostAcross = mostInkOfLine) const
    {
        if (box.isEmpty()) {
            return false;
        }
        const GreyImage part = cropped(m_ink, box);
        const auto from = [](double phase, int at, double pitch) {
            const double offset = std::fmod(phase - at, pitch);
            return offset < 0 ? offset + pitch : offset;
        };
        return inkAtBoundaries(columnProfile(part), m_comb.pitch,
                               from(m_left, box.left, m_comb.pitch)) <= mostAcross &&
               inkAtBoundaries(rowProfile(part), rows.pitch,
                               from(rows.phase, box.top, rows.pitch)) <= mostInkOfLine;
    }

    std::optional<Grid> fill(const Comb &rows)
    {
        const Box box = inRegion(m_box);
        const double offset = std::fmod(m_comb.phase - m_region.left, m_comb.pitch);
        m_left = offset > 0 ? offset - m_comb.pitch : offset;
        const auto rowAt = [&](double y) {
            return int(std::floor((y - rows.phase) / rows.pitch));
        };
        const auto columnAt = [&](double x) {
            return int(std::floor((x - m_left) / m_comb.pitch));
        };
        const auto rowTop = [&](int row) {
            return std::clamp(int(std::lround(rows.phase + row * rows.pitch)), 0, m_ink.height);
        };
        int first = rowAt(box.top + 0.25 * rows.pitch);
        int last = rowAt(box.bottom - 0.25 * rows.pitch);
        while (rowTop(first) > 0 &&
               isInCells(rows, {box.left, rowTop(first - 1), box.right, rowTop(first)})) {
            --first;
        }
        while (rowTop(last + 1) < m_ink.height &&
               isInCells(rows, {box.left, rowTop(last + 1), box.right, rowTop(last + 2)})) {
            ++last;
        }
        const int top = rowTop(first);
        const int bottom = rowTop(last + 1);
        const int left = isInCells(rows, {0, top, box.left, bottom}, mostInkAside) ? 0 : box.left;
        const int right = isInCells(rows, {box.right, top, m_ink.width, bottom}, mostInkAside)
                              ? m_ink.width
                              : box.right;

        const int firstColumn = columnAt(left + 0.25 * m_comb.pitch);
        const int lastColumn = columnAt(right - 0.25 * m_comb.pitch);
        std::vector<int> peaks;
        for (int row = first; row <= last; ++row) {
            for (int column = firstColumn; column <= lastColumn; ++column) {
                if (const int ink = peak(cell(rows, row, column)); ink >= leastInk) {
                    peaks.push_back(ink);
                }
            }
        }
        if (int(peaks.size()) < fewestCharacters) {
            return {};
        }
        std::nth_element(peaks.begin(), peaks.begin() + std::ptrdiff_t(peaks.size() / 2),
                         peaks.end());
        const int least = std::max(leastInk, int(faintest * peaks[peaks.size() / 2]));

        Grid grid;
        int leftmost = lastColumn + 1;
        int rightmost = firstColumn - 1;
        for (int row = first; row <= last; ++row) {
            bool isBlank = true;
            for (int column = firstColumn; column <= lastColumn; ++column) {
                if (peak(cell(rows, row, column)) >= least) {
                    isBlank = false;
                    leftmost = std::min(leftmost, column);
                    rightmost = std::max(rightmost, column);
                }
            }
            if (!isBlank) {
                grid.rows.push_back({rowTop(row) + m_region.top, rowTop(row + 1) + m_region.top});
            }
        }
        if (grid.rows.empty()) {
            return {};
        }
        grid.columns = rightmost - leftmost + 1;
        // Cells of whole pixels, as most terminals have them, are cut at the same pixel all.
        const double whole = std::round(m_comb.pitch);
        const bool isWhole = std::abs(whole - m_comb.pitch) * grid.columns < wholeDrift;
        grid.cellWidth = isWhole ? whole : m_comb.pitch;
        grid.left = m_region.left + m_left + leftmost * m_comb.pitch +
                    (m_comb.pitch - grid.cellWidth) * grid.columns / 2;
        grid.leastInk = least;
        grid.box = {int(std::floor(grid.left)), grid.rows.front().top,
                    int(std::ceil(grid.columnLeft(grid.columns))), grid.rows.back().bottom};
        return grid;
    }

    const Comb m_comb;
    Box m_box;
    /// Where more of the block may stand.
    Box m_region;
    GreyImage m_ink;
    /// Where a column begins in the region.
    double m_left = 0;
};

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
                    {line, columnProfile(inkOfLine(page, line->box, line->letterHeight))});
            }
        }
        std::ranges::sort(m_candidates, {}, [](const Candidate &candidate) {
            return std::pair(candidate.line->box.left, candidate.line->box.top);
        });
        for (Candidate &candidate : m_candidates) {
            candidate.pitch = guessedPitch(candidate.profile, candidate.line->letterHeight);
            if (candidate.pitch == 0) {
                candidate.pitch =
                    guessedPitch(profileFrom(candidate), candidate.line->letterHeight);
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
    /// The ink of a short line and of what stands right of it in its row.
    std::vector<float> profileFrom(const Candidate &first) const
    {
        const Box &row = first.line->box;
        std::vector<float> profile = first.profile;
        for (const Candidate &other : m_candidates) {
            const Box &box = other.line->box;
            const int gap = box.left - (row.left + int(profile.size()));
            if (box.left <= row.left || gap < 0 || gap > widestGap * first.line->letterHeight ||
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
        double most = 0;
        double pitch = 0;
        for (const Candidate &guess : m_candidates) {
            double width = 0;
            for (const Candidate &other : m_candidates) {
                if (guess.pitch > 0 &&
                    std::abs(other.pitch - guess.pitch) < alikePitch * guess.pitch) {
                    width += double(other.profile.size());
                }
            }
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
        if (comb.inkShare > mostInkOfLine) {
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
            if (!candidate.taken && fits && shareOf(candidate, comb) <= mostInkOfLine) {
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
            if (!block.empty() && box.top - bottom > mostBlankRows * mostRow * comb.pitch) {
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
        if (own.inkShare > mostInkOfBlock) {
            return;
        }
        std::vector<const TextLine *> lines;
        for (const Candidate *candidate : block) {
            lines.push_back(candidate->line);
        }
        if (const std::optional<Grid> grid = BlockShape(m_page, own, lines).grid()) {
            m_grids.push_back(*grid);
        }
    }

    const GreyImage &m_page;
    std::vector<Candidate> m_candidates;
    std::vector<Grid> m_grids;
};

} // namespace

std::vector<Grid> findGrids(const GreyImage &page, const std::vector<const TextLine *> &lines)
{
    return Finder(page, lines).run();
}

} // namespace recognition
