// SPDX-License-Identifier: MIT
#include "OutlinedText.h"

#include "BoxGrid.h"
#include "Effort.h"
#include "OutlinedLetters.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <optional>

namespace recognition {

namespace {

/// In smaller type there is no room for an outline, in pixels.
constexpr int lowestRow = 12;

/// Letters of a row are of one colour. What is seen through them is not.
constexpr int mostFillStep = 45;

/// Scenery is looked at this far from the letters of a row and this deep, in pixels: beyond the
/// outline, and deeper than the border of a button is thick.
constexpr int sceneryAt = 5;
constexpr int sceneryDepth = 4;

/// How much the scenery has to differ from the outline and from the letters. Holes in big letters
/// have an outline too, but around them is what they are filled with.
constexpr int leastSceneryStep = 40;
constexpr int leastFillStep = 30;

/// Letters side by side.
struct Row
{
    Box box;
    int fill = 0;
    int letters = 0;
    int sure = 0;
    int bare = 0;
};

bool standInOneRow(const Row &row, const Row &other)
{
    const int low = std::min(row.box.height(), other.box.height());
    const int high = std::max(row.box.height(), other.box.height());
    return std::abs(row.fill - other.fill) <= mostFillStep &&
           2 * verticalOverlap(row.box, other.box) > low && 3 * low > high &&
           -horizontalOverlap(row.box, other.box) <= high;
}

/// Joins a letter to the rows that it stands in, the earliest first: joined with one it may come
/// within reach of others.
std::vector<Row> joinedRows(const std::vector<OutlinedLetter> &letters, const GreyImage &page)
{
    std::vector<std::optional<Row>> rows;
    BoxGrid grid(page.width, page.height);
    for (const OutlinedLetter &letter : letters) {
        checkpoint();
        if (letter.shape.box.height() < smallestOutlined) {
            continue;
        }
        Row row{letter.shape.box, letter.fill, 1, letter.isSure, letter.isBare};
        while (true) {
            // The higher of two in one row is less than three times as high as the lower.
            const int reach = 3 * row.box.height();
            std::size_t earliest = rows.size();
            grid.forEachNear(
                {row.box.left - reach, row.box.top, row.box.right + reach, row.box.bottom},
                [&](std::size_t i) {
                    if (i < earliest && standInOneRow(*rows[i], row)) {
                        earliest = i;
                    }
                });
            if (earliest == rows.size()) {
                break;
            }
            const Row &other = *rows[earliest];
            grid.remove(earliest, other.box);
            row.box.unite(other.box);
            row.fill = row.letters > other.letters ? row.fill : other.fill;
            row.letters += other.letters;
            row.sure += other.sure;
            row.bare += other.bare;
            rows[earliest].reset();
        }
        grid.add(rows.size(), row.box);
        rows.emplace_back(row);
    }
    std::vector<Row> left;
    for (const std::optional<Row> &row : rows) {
        if (row) {
            left.push_back(*row);
        }
    }
    return left;
}

std::vector<Row> rowsOf(const std::vector<OutlinedLetter> &letters, const GreyImage &page)
{
    std::vector<Row> rows = joinedRows(letters, page);
    std::erase_if(rows, [](const Row &row) {
        // Letters that only have a shadow are better left as they are.
        return row.box.height() < lowestRow || 2 * row.sure < row.letters ||
               6 * row.bare > row.letters ||
               (row.sure < 2 && row.box.width() < 2 * row.box.height());
    });
    // Pieces of the scenery between two rows overlap them.
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.sure > b.sure; });
    std::vector<Row> apart;
    BoxGrid grid(page.width, page.height);
    for (const Row &row : rows) {
        bool overlaps = false;
        grid.forEachNear(row.box, [&](std::size_t i) {
            const Box &other = apart[i].box;
            overlaps = overlaps || (horizontalOverlap(row.box, other) > 0 &&
                                    4 * verticalOverlap(row.box, other) > row.box.height());
        });
        if (!overlaps) {
            grid.add(apart.size(), row.box);
            apart.push_back(row);
        }
    }
    return apart;
}

Box grown(const Box &box, int by, const GreyImage &page)
{
    return {std::max(0, box.left - by), std::max(0, box.top - by),
            std::min(page.width, box.right + by), std::min(page.height, box.bottom + by)};
}

/// Whether around the row there is neither more of the outline's grey nor more of the letters'.
bool standsOnScenery(const GreyImage &page, const Box &row, int outline, int fill)
{
    std::vector<int> greys;
    for (int distance = sceneryAt; distance < sceneryAt + sceneryDepth; ++distance) {
        const Box frame = grown(row, distance, page);
        for (int x = frame.left; x < frame.right; ++x) {
            greys.push_back(page.at(x, frame.top));
            greys.push_back(page.at(x, frame.bottom - 1));
        }
        for (int y = frame.top; y < frame.bottom; ++y) {
            greys.push_back(page.at(frame.left, y));
            greys.push_back(page.at(frame.right - 1, y));
        }
    }
    const int scenery = middleOf(std::move(greys));
    return scenery > outline + leastSceneryStep && scenery < fill - leastFillStep;
}

/// Puts the letters of a row on a patch of its own.
void paint(const GreyImage &page, const std::vector<const OutlinedLetter *> &letters,
           const Box &patch, int outline, GreyImage &painted)
{
    for (int y = patch.top; y < patch.bottom; ++y) {
        std::fill(painted.row(y) + patch.left, painted.row(y) + patch.right, std::uint8_t(outline));
    }
    for (const OutlinedLetter *letter : letters) {
        for (const Run &run : letter->shape.runs) {
            // With the blur of its edges.
            const Box box = grown({run.left, run.y, run.right, run.y + 1}, 1, page);
            for (int y = std::max(box.top, patch.top); y < std::min(box.bottom, patch.bottom);
                 ++y) {
                for (int x = std::max(box.left, patch.left); x < std::min(box.right, patch.right);
                     ++x) {
                    painted.row(y)[x] = std::max(page.at(x, y), std::uint8_t(outline));
                }
            }
        }
    }
}

/// Adds the bright letters with dark outlines on `page` to `found`.
void findBright(const GreyImage &page, OutlinedText &found)
{
    const std::vector<OutlinedLetter> letters = outlinedLetters(page);
    BoxGrid grid(page.width, page.height);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const Box &box = letters[i].shape.box;
        // One place is enough to find what a patch holds whole.
        grid.add(i, {box.left, box.top, box.left, box.top});
    }
    for (const Row &row : rowsOf(letters, page)) {
        checkpoint();
        Box patch = row.box;
        // Dots and accents above and below.
        patch.top -= row.box.height() / 3;
        patch.bottom += row.box.height() / 4;
        patch = grown(patch, outlineAt + 1, page);
        std::vector<const OutlinedLetter *> members;
        std::vector<int> outlines;
        grid.forEachNear(patch, [&](std::size_t i) {
            const OutlinedLetter &letter = letters[i];
            if (letter.isBare || !patch.contains(letter.shape.box) ||
                std::abs(letter.fill - row.fill) > mostFillStep) {
                return;
            }
            members.push_back(&letter);
            if (letter.isSure && letter.shape.box.height() >= smallestOutlined) {
                outlines.push_back(letter.outline);
            }
        });
        const int outline = middleOf(std::move(outlines));
        if (!standsOnScenery(page, row.box, outline, row.fill)) {
            continue;
        }
        if (found.page.isEmpty()) {
            found.page = page;
        }
        paint(page, members, patch, outline, found.page);
        found.rows.push_back(patch);
    }
}

GreyImage inverted(GreyImage page)
{
    for (std::uint8_t &pixel : page.pixels) {
        pixel = std::uint8_t(255 - pixel);
    }
    return page;
}

} // namespace

OutlinedText findOutlinedText(const GreyImage &page)
{
    OutlinedText found;
    if (page.width < 3 || page.height < 3) {
        return found;
    }
    findBright(page, found);
    if (!found.rows.empty()) {
        return found;
    }
    findBright(inverted(page), found);
    if (!found.rows.empty()) {
        found.page = inverted(std::move(found.page));
    }
    return found;
}

} // namespace recognition
