// SPDX-License-Identifier: MIT
#include "OutlinedText.h"

#include "OutlinedLetters.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

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

std::vector<Row> rowsOf(const std::vector<OutlinedLetter> &letters)
{
    std::vector<Row> rows;
    for (const OutlinedLetter &letter : letters) {
        if (letter.shape.box.height() < smallestOutlined) {
            continue;
        }
        Row row{letter.shape.box, letter.fill, 1, letter.isSure, letter.isBare};
        // Joining may bring it within reach of rows passed over before.
        for (std::size_t i = 0; i < rows.size();) {
            if (!standInOneRow(rows[i], row)) {
                ++i;
                continue;
            }
            row.box.unite(rows[i].box);
            row.fill = row.letters > rows[i].letters ? row.fill : rows[i].fill;
            row.letters += rows[i].letters;
            row.sure += rows[i].sure;
            row.bare += rows[i].bare;
            rows.erase(rows.begin() + std::ptrdiff_t(i));
            i = 0;
        }
        rows.push_back(row);
    }
    std::erase_if(rows, [](const Row &row) {
        // Letters that only have a shadow are better left as they are.
        return row.box.height() < lowestRow || 2 * row.sure < row.letters ||
               6 * row.bare > row.letters ||
               (row.sure < 2 && row.box.width() < 2 * row.box.height());
    });
    // Pieces of the scenery between two rows overlap them.
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.sure > b.sure; });
    std::vector<Row> apart;
    for (const Row &row : rows) {
        const bool overlaps = std::any_of(apart.begin(), apart.end(), [&row](const Row &other) {
            return horizontalOverlap(row.box, other.box) > 0 &&
                   4 * verticalOverlap(row.box, other.box) > row.box.height();
        });
        if (!overlaps) {
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
    for (const Row &row : rowsOf(letters)) {
        Box patch = row.box;
        // Dots and accents above and below.
        patch.top -= row.box.height() / 3;
        patch.bottom += row.box.height() / 4;
        patch = grown(patch, outlineAt + 1, page);
        std::vector<const OutlinedLetter *> members;
        std::vector<int> outlines;
        for (const OutlinedLetter &letter : letters) {
            if (letter.isBare || !patch.contains(letter.shape.box) ||
                std::abs(letter.fill - row.fill) > mostFillStep) {
                continue;
            }
            members.push_back(&letter);
            if (letter.isSure && letter.shape.box.height() >= smallestOutlined) {
                outlines.push_back(letter.outline);
            }
        }
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
