// SPDX-License-Identifier: MIT
#include "VerticalText.h"

#include "Effort.h"
#include "Glyph.h"
#include "LineImage.h"
#include "TextRepair.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

constexpr auto verticalModel = "jpn_vert"_L1;

/// Fewer letters with a neighbour below do not tell a column from a list.
constexpr std::size_t fewestLetters = 8;

/// Pages with more marks are screens, where comparing all with all would take too long.
constexpr std::size_t mostMarks = 3000;

/// Readings less sure than this are chance.
constexpr double leastConfidence = 60;

int share(std::vector<int> values, double part)
{
    if (values.empty()) {
        return 0;
    }
    const auto at = values.begin() + std::ptrdiff_t(double(values.size() - 1) * part);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

int letterSizeOf(const std::vector<Mark> &marks)
{
    std::vector<int> sizes;
    sizes.reserve(marks.size());
    for (const Mark &mark : marks) {
        sizes.push_back(std::max(mark.box.width(), mark.box.height()));
    }
    return share(std::move(sizes), 0.75);
}

/// The columns of ink, from the right. Parts of letters that stand apart, nearer to each other
/// than columns ever do, are put together.
std::vector<Box> columnsOf(const GreyImage &picture)
{
    std::vector<Box> columns;
    int right = picture.width;
    while (right > 0) {
        const Box pixels{right - 1, 0, right, picture.height};
        if (inkIn(picture, pixels).isEmpty()) {
            --right;
            continue;
        }
        Box column = pixels;
        while (column.left > 0 &&
               !inkIn(picture, {column.left - 1, 0, column.left, picture.height}).isEmpty()) {
            --column.left;
        }
        right = column.left;
        if (!columns.empty() && columns.back().left - column.right < preparedLetterHeight / 4 &&
            columns.back().right - column.left < preparedLetterHeight * 3 / 2) {
            columns.back().unite(column);
        } else {
            columns.push_back(column);
        }
    }
    return columns;
}

/// Turned by a quarter against the clock: what was above is left, as the model wants it.
GreyImage turnedLeft(const GreyImage &column)
{
    GreyImage result(column.height, column.width, 255);
    for (int y = 0; y < column.height; ++y) {
        for (int x = 0; x < column.width; ++x) {
            result.row(column.width - 1 - x)[y] = column.at(x, y);
        }
    }
    return result;
}

} // namespace

bool isVertical(const std::vector<Mark> &marks)
{
    if (marks.size() < fewestLetters || marks.size() > mostMarks) {
        return false;
    }
    const int size = letterSizeOf(marks);
    std::vector<int> beside;
    std::vector<int> below;
    std::size_t wide = 0;
    for (const Mark &mark : marks) {
        checkpoint();
        const Box &box = mark.box;
        wide += box.width() > 2 * size || box.width() > 2 * box.height();
        if (box.height() * 2 < size && box.width() * 2 < size) {
            continue;
        }
        int right = std::numeric_limits<int>::max();
        int down = std::numeric_limits<int>::max();
        for (const Mark &other : marks) {
            if (&other == &mark) {
                continue;
            }
            const Box &o = other.box;
            if (o.left >= box.right &&
                2 * verticalOverlap(o, box) > std::min(o.height(), box.height())) {
                right = std::min(right, o.left - box.right);
            }
            if (o.top >= box.bottom &&
                2 * horizontalOverlap(o, box) > std::min(o.width(), box.width())) {
                down = std::min(down, o.top - box.bottom);
            }
        }
        if (right <= 3 * size) {
            beside.push_back(right);
        }
        if (down <= 3 * size) {
            below.push_back(down);
        }
    }
    if (below.size() < fewestLetters || wide * 5 > marks.size()) {
        return false;
    }
    // Within a column letters nearly touch; between columns there is half a letter at least.
    const int near = share(below, 0.5);
    return 10 * near < 3 * size &&
           (beside.empty() || share(beside, 0.5) > std::max(2 * near, size / 4));
}

std::vector<PageLine> readVertical(const GreyImage &page, const std::vector<Mark> &marks,
                                   EngineCache &engines)
{
    if (!engines.has(verticalModel)) {
        return {};
    }
    TextLine whole;
    whole.marks = marks;
    whole.box = marks.front().box;
    for (const Mark &mark : marks) {
        whole.box.unite(mark.box);
    }
    whole.letterHeight = letterSizeOf(marks);
    whole.isVertical = true;
    const LineImage image = lineImage(page, whole);
    if (image.isEmpty()) {
        return {};
    }
    const auto engine = engines.engine(verticalModel, Dictionary::With);
    if (!engine) {
        return {};
    }

    std::vector<PageLine> lines;
    double sureness = 0;
    int characters = 0;
    for (const Box &column : columnsOf(image.picture)) {
        Reading reading;
        try {
            reading = engine->read(turnedLeft(cropped(image.picture, column)));
        } catch (const Spent &) {
            break;
        }
        if (reading.isEmpty()) {
            continue;
        }
        sureness += reading.confidence() * reading.characters();
        characters += reading.characters();
        // The readings' x is the page's y.
        int top = reading.words.first().box.left;
        int bottom = top;
        for (const ReadWord &word : reading.words) {
            top = std::min(top, word.box.left);
            bottom = std::max(bottom, word.box.right);
        }
        lines.push_back(
            {{int(image.pageX(column.left)), int((top - image.offsetY) / image.scale),
              int(image.pageX(column.right)), int((bottom - image.offsetY) / image.scale)},
             {{repairedText(reading, Script::Japanese), reading.confidence() / 100}},
             verticalModel});
    }
    if (characters == 0 || sureness < leastConfidence * characters) {
        return {};
    }
    return lines;
}

} // namespace recognition
