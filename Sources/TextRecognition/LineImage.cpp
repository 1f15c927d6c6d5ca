// SPDX-License-Identifier: MIT
#include "LineImage.h"

#include "Effort.h"
#include "InkHeight.h"
#include "LineIcons.h"
#include "LineRules.h"
#include "Resample.h"
#include "Soften.h"
#include "Tones.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// White around the line, in scaled pixels; without it first and last letters suffer.
constexpr int margin = 6;

/// The longest prepared line, in pixels: what a line of 9 px type across an 8K screen needs.
constexpr int longest = 30000;

/// Paler pixels of a prepared line are no ink.
constexpr int palest = 225;

/// The edge of a selection lies within this many pixels of its letters.
constexpr int patchEdge = 4;

/// The rows of the line at a column, `bottom` just outside.
struct Rows
{
    int top = 0;
    int bottom = 0;
};

/// For each column the rows that letters near it take up. Outside there is only what is no part
/// of the line: the ends of a selection, a border, a neighbouring line.
std::vector<Rows> rowsOf(const TextLine &line, const Box &box)
{
    std::vector<Rows> rows(std::size_t(box.width()), Rows{box.bottom, box.top});
    for (const Mark &mark : line.marks) {
        const int left = std::max(box.left, mark.box.left - line.letterHeight);
        const int right = std::min(box.right, mark.box.right + line.letterHeight);
        for (int x = left; x < right; ++x) {
            Rows &at = rows[std::size_t(x - box.left)];
            at.top = std::min(at.top, std::max(box.top, mark.box.top - 1));
            at.bottom = std::max(at.bottom, std::min(box.bottom, mark.box.bottom + 1));
        }
    }
    return rows;
}

/// Whites what shows of the edges of the patch that `stretch` stands on: rows at the top and bottom
/// and columns at the ends that are dark nearly throughout.
void eraseEdges(GreyImage &flat, const Stretch &stretch, const Box &box)
{
    const int left = std::max(0, stretch.box.left - box.left);
    const int right = std::min(flat.width, stretch.box.right - box.left);
    const auto darkShare = [&flat](int x0, int x1, int y0, int y1) {
        int dark = 0;
        for (int y = y0; y < y1; ++y) {
            for (int x = x0; x < x1; ++x) {
                dark += flat.at(x, y) < 128;
            }
        }
        return double(dark) / std::max(1, (x1 - x0) * (y1 - y0));
    };
    const auto whiten = [&flat](int x0, int x1, int y0, int y1) {
        for (int y = y0; y < y1; ++y) {
            std::fill(flat.row(y) + x0, flat.row(y) + x1, std::uint8_t(255));
        }
    };
    const int deepest = std::min(patchEdge, flat.height / 2);
    for (int y = 0; y < deepest; ++y) {
        for (const int row : {y, flat.height - 1 - y}) {
            if (darkShare(left, right, row, row + 1) > 0.5) {
                whiten(left, right, row, row + 1);
            }
        }
    }
    for (int x = 0; x < std::min(patchEdge, (right - left) / 2); ++x) {
        for (const int column : {left + x, right - 1 - x}) {
            if (darkShare(column, column + 1, 0, flat.height) > 0.7) {
                whiten(column, column + 1, 0, flat.height);
            }
        }
    }
}

} // namespace

LineImage lineImage(const GreyImage &page, const TextLine &line)
{
    const Box box{std::max(0, line.box.left - 1), std::max(0, line.box.top - 1),
                  std::min(page.width, line.box.right + 1),
                  std::min(page.height, line.box.bottom + 1)};
    if (box.isEmpty() || line.marks.empty()) {
        return {};
    }

    LineImage result;
    const std::vector<Stretch> stretches = stretchesOf(page, line);
    for (const Stretch &stretch : stretches) {
        result.contrast = std::max(result.contrast, stretch.tones.contrast());
    }
    if (result.contrast < leastContrast) {
        return {};
    }

    const std::vector<Rows> used = rowsOf(line, box);
    const std::optional<GreyImage> aliased = aliasedInk(page, box);
    GreyImage flat(box.width(), box.height(), 255);
    for (int x = box.left; x < box.right; ++x) {
        checkAt(x);
        const Tones tones = tonesAt(stretches, x);
        if (tones.contrast() < leastContrast) {
            continue;
        }
        const double slope = 255.0 / (tones.ink - tones.background);
        const Rows &at = used[std::size_t(x - box.left)];
        for (int y = at.top; y < at.bottom; ++y) {
            if (aliased) {
                flat.row(y - box.top)[x - box.left] = aliased->at(x - box.left, y - box.top);
                continue;
            }
            const double ink = std::clamp((page.at(x, y) - tones.background) * slope, 0.0, 255.0);
            flat.row(y - box.top)[x - box.left] = std::uint8_t(255 - std::lround(ink));
        }
    }

    for (const Stretch &stretch : stretches) {
        if (stretch.tones.onPatch) {
            eraseEdges(flat, stretch, box);
        }
    }

    checkpoint();
    int height = line.letterHeight;
    if (!line.isVertical) {
        removeRules(flat, line.letterHeight);
        if (const int ink = inkHeight(flat); ink > 0) {
            whitenIcons(flat, ink);
        }
        if (const int ink = inkHeight(flat); ink > 0) {
            height = ink;
        }
    }
    double scale = double(preparedLetterHeight) / std::max(4, height);
    scale = std::min({scale, 6.0, double(longest) / box.width()});
    const int width = std::max(1, int(std::lround(box.width() * scale)));
    const int rows = std::max(1, int(std::lround(box.height() * scale)));
    result.isBilevel = isBilevel(flat);
    if (result.isBilevel) {
        flat = softened(flat);
    }
    const GreyImage scaled = resampled(flat, width, rows);
    result.picture = GreyImage(width + 2 * margin, rows + 2 * margin, 255);
    for (int y = 0; y < rows; ++y) {
        std::copy_n(scaled.row(y), width, result.picture.row(y + margin) + margin);
    }
    result.scale = scale;
    result.offsetX = margin - box.left * scale;
    result.offsetY = margin - box.top * scale;
    return result;
}

bool isBlankColumn(const GreyImage &picture, int x)
{
    for (int y = 0; y < picture.height; ++y) {
        if (picture.at(x, y) < palest) {
            return false;
        }
    }
    return true;
}

} // namespace recognition
