// SPDX-License-Identifier: MIT
#include "OutlinedText.h"

#include "Components.h"

#include <algorithm>
#include <cstddef>

namespace recognition {

namespace {

/// The darkest fill of a letter, and how much darker its outline has to be.
constexpr int darkestFill = 150;
constexpr int leastStep = 80;

/// How high letters are, and the dots and accents beside them at least.
constexpr int smallest = 8;
constexpr int smallestDot = 2;
constexpr int tallest = 120;

/// Outlines are looked at this far from the letter, in pixels: beyond its blurred edge.
constexpr int outlineAt = 2;

/// The share of its outline that makes a shape a letter, and that is enough beside others.
constexpr double sureOutline = 0.85;
constexpr double leastOutline = 0.5;

/// Letters of a row are of one colour. What is seen through them is not.
constexpr int mostFillStep = 45;

/// Scenery is looked at this far from the letters of a row, in pixels: beyond the outline.
constexpr int sceneryAt = 6;

/// How much the scenery has to differ from the outline and from the letters. Holes in big letters
/// have an outline too, but around them is what they are filled with.
constexpr int leastSceneryStep = 40;
constexpr int leastFillStep = 30;

struct Letter
{
    Component shape;
    int outline = 0;
    int fill = 0;
    /// Whether its outline is whole, and whether there is none to speak of.
    bool isSure = false;
    bool isBare = false;
};

int middle(std::vector<int> values)
{
    const auto at = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

std::vector<Run> brightRuns(const GreyImage &page)
{
    std::vector<Run> runs;
    for (int y = 0; y < page.height; ++y) {
        const std::uint8_t *line = page.row(y);
        for (int x = 0; x < page.width;) {
            while (x < page.width && line[x] < darkestFill)
                ++x;
            const int start = x;
            while (x < page.width && line[x] >= darkestFill)
                ++x;
            if (x > start)
                runs.push_back({y, start, x});
        }
    }
    return runs;
}

/// Whether a shape is made of strokes: filled boxes and icons are not.
bool hasStrokes(const Component &shape)
{
    const Box &box = shape.box;
    return 10 * box.width() <= 4 * box.height() ||
           10 * shape.pixels <= 7 * box.width() * box.height();
}

int darkestNear(const GreyImage &page, int x, int y)
{
    int darkest = 255;
    for (int nearY = std::max(0, y - 1); nearY <= std::min(page.height - 1, y + 1); ++nearY) {
        for (int nearX = std::max(0, x - 1); nearX <= std::min(page.width - 1, x + 1); ++nearX)
            darkest = std::min(darkest, int(page.at(nearX, nearY)));
    }
    return darkest;
}

/// The greys around a shape: of each pixel `outlineAt` away and those beside it the darkest, since
/// an outline may be one pixel wide.
std::vector<int> surroundings(const GreyImage &page, const Component &shape)
{
    const int margin = outlineAt + 1;
    const Box &box = shape.box;
    GreyImage mask(box.width() + 2 * margin, box.height() + 2 * margin, 0);
    for (const Run &run : shape.runs) {
        for (int y = run.y - outlineAt; y <= run.y + outlineAt; ++y) {
            const bool onEdge = std::abs(y - run.y) == outlineAt;
            std::uint8_t *row = mask.row(y - box.top + margin) - box.left + margin;
            for (int x = run.left - outlineAt; x < run.right + outlineAt; ++x) {
                const bool beside = x < run.left - outlineAt + 1 || x >= run.right + outlineAt - 1;
                row[x] = std::max(row[x], std::uint8_t(onEdge || beside ? 1 : 2));
            }
        }
    }
    std::vector<int> greys;
    for (int y = 0; y < mask.height; ++y) {
        const int pageY = y + box.top - margin;
        for (int x = 0; x < mask.width; ++x) {
            const int pageX = x + box.left - margin;
            if (mask.at(x, y) == 1 && pageX >= 0 && pageY >= 0 && pageX < page.width &&
                pageY < page.height)
                greys.push_back(darkestNear(page, pageX, pageY));
        }
    }
    return greys;
}

std::vector<Letter> outlinedShapes(const GreyImage &page)
{
    std::vector<Letter> letters;
    for (Component &shape : connectedComponents(brightRuns(page))) {
        const Box &box = shape.box;
        if (box.height() < smallestDot || box.height() > tallest ||
            box.width() > 15 * box.height() + tallest)
            continue;
        if (box.height() >= smallest && !hasStrokes(shape))
            continue;
        std::vector<int> around = surroundings(page, shape);
        if (around.empty())
            continue;
        const auto dark = std::count_if(around.begin(), around.end(),
                                        [](int grey) { return grey <= darkestFill - leastStep; });
        const double share = double(dark) / double(around.size());
        if (share < leastOutline && box.height() < smallest)
            continue;
        std::vector<int> fills;
        for (const Run &run : shape.runs)
            fills.push_back(page.at((run.left + run.right) / 2, run.y));
        letters.push_back({std::move(shape), middle(std::move(around)), middle(std::move(fills)),
                           share >= sureOutline, share < leastOutline});
    }
    return letters;
}

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

std::vector<Row> rowsOf(const std::vector<Letter> &letters)
{
    std::vector<Row> rows;
    for (const Letter &letter : letters) {
        if (letter.shape.box.height() < smallest)
            continue;
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
        return 2 * row.sure < row.letters || 6 * row.bare > row.letters ||
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
        if (!overlaps)
            apart.push_back(row);
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
    const Box frame = grown(row, sceneryAt, page);
    std::vector<int> greys;
    for (int x = frame.left; x < frame.right; ++x) {
        greys.push_back(page.at(x, frame.top));
        greys.push_back(page.at(x, frame.bottom - 1));
    }
    for (int y = frame.top; y < frame.bottom; ++y) {
        greys.push_back(page.at(frame.left, y));
        greys.push_back(page.at(frame.right - 1, y));
    }
    const int scenery = middle(std::move(greys));
    return scenery > outline + leastSceneryStep && scenery < fill - leastFillStep;
}

/// Puts the letters of a row on a patch of its own.
void paint(const GreyImage &page, const std::vector<const Letter *> &letters, const Box &patch,
           int outline, GreyImage &painted)
{
    for (int y = patch.top; y < patch.bottom; ++y)
        std::fill(painted.row(y) + patch.left, painted.row(y) + patch.right, std::uint8_t(outline));
    for (const Letter *letter : letters) {
        for (const Run &run : letter->shape.runs) {
            // With the blur of its edges.
            const Box box = grown({run.left, run.y, run.right, run.y + 1}, 1, page);
            for (int y = std::max(box.top, patch.top); y < std::min(box.bottom, patch.bottom);
                 ++y) {
                for (int x = std::max(box.left, patch.left); x < std::min(box.right, patch.right);
                     ++x)
                    painted.row(y)[x] = std::max(page.at(x, y), std::uint8_t(outline));
            }
        }
    }
}

/// Adds the bright letters with dark outlines on `page` to `found`.
void findBright(const GreyImage &page, OutlinedText &found)
{
    const std::vector<Letter> letters = outlinedShapes(page);
    for (const Row &row : rowsOf(letters)) {
        Box patch = row.box;
        // Dots and accents above and below.
        patch.top -= row.box.height() / 3;
        patch.bottom += row.box.height() / 4;
        patch = grown(patch, outlineAt + 1, page);
        std::vector<const Letter *> members;
        std::vector<int> outlines;
        for (const Letter &letter : letters) {
            if (letter.isBare || !patch.contains(letter.shape.box) ||
                std::abs(letter.fill - row.fill) > mostFillStep)
                continue;
            members.push_back(&letter);
            if (letter.isSure && letter.shape.box.height() >= smallest)
                outlines.push_back(letter.outline);
        }
        const int outline = middle(std::move(outlines));
        if (!standsOnScenery(page, row.box, outline, row.fill))
            continue;
        if (found.page.isEmpty())
            found.page = page;
        paint(page, members, patch, outline, found.page);
        found.rows.push_back(patch);
    }
}

GreyImage inverted(GreyImage page)
{
    for (std::uint8_t &pixel : page.pixels)
        pixel = std::uint8_t(255 - pixel);
    return page;
}

} // namespace

OutlinedText findOutlinedText(const GreyImage &page)
{
    OutlinedText found;
    if (page.width < 3 || page.height < 3)
        return found;
    findBright(page, found);
    if (!found.rows.empty())
        return found;
    findBright(inverted(page), found);
    if (!found.rows.empty())
        found.page = inverted(std::move(found.page));
    return found;
}

} // namespace recognition
