// SPDX-License-Identifier: MIT
#include "Glyph.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>

namespace recognition {

namespace {

/// Darker pixels are ink.
constexpr int ink = 165;

/// A capital's foot makes it wider than this share of its height; a stroke is narrower.
constexpr double narrowest = 0.33;

/// The left edge of a capital is ink over more than this share of its height.
constexpr double leastEdge = 0.6;

/// The rows that letters stand in have at least this share of the ink of the row with most; those
/// that only some letters reach down into have less.
constexpr double leastOfBody = 0.35;

/// The foot of a capital is at most so many rows below that of the line.
constexpr int lowestFoot = 2;

bool hasInk(const GreyImage &picture, int left, int right, int top, int bottom)
{
    for (int y = top; y < bottom; ++y) {
        const std::uint8_t *row = picture.row(y);
        if (std::any_of(row + left, row + right, [](std::uint8_t grey) { return grey < ink; })) {
            return true;
        }
    }
    return false;
}

std::optional<std::pair<int, int>> inkNearMiddle(const GreyImage &line, const Box &place)
{
    std::optional<std::pair<int, int>> found;
    int nearest = place.width() + 1;
    for (int y = place.top; y < place.bottom; ++y) {
        for (int x = place.left; x < place.right; ++x) {
            const int distance = std::abs(2 * x - place.centreX2());
            if (line.at(x, y) < ink && distance < nearest) {
                nearest = distance;
                found = {x, y};
            }
        }
    }
    return found;
}

std::ptrdiff_t inkOfRow(const GreyImage &line, int y)
{
    const std::uint8_t *row = line.row(y);
    return std::count_if(row, row + line.width, [](std::uint8_t grey) { return grey < ink; });
}

/// Just below the letters of a line that have nothing below it.
int footOf(const GreyImage &line, const Box &inked)
{
    std::ptrdiff_t most = 0;
    for (int y = inked.top; y < inked.bottom; ++y) {
        most = std::max(most, inkOfRow(line, y));
    }
    int foot = inked.bottom;
    while (foot > inked.top && double(inkOfRow(line, foot - 1)) < leastOfBody * double(most)) {
        --foot;
    }
    return foot;
}

} // namespace

Box inkIn(const GreyImage &line, Box box)
{
    const auto isBlank = [&line](int left, int right, int top, int bottom) {
        return !hasInk(line, left, right, top, bottom);
    };
    while (box.top < box.bottom && isBlank(box.left, box.right, box.top, box.top + 1)) {
        ++box.top;
    }
    while (box.bottom > box.top && isBlank(box.left, box.right, box.bottom - 1, box.bottom)) {
        --box.bottom;
    }
    while (box.left < box.right && isBlank(box.left, box.left + 1, box.top, box.bottom)) {
        ++box.left;
    }
    while (box.right > box.left && isBlank(box.right - 1, box.right, box.top, box.bottom)) {
        --box.right;
    }
    return box;
}

std::optional<Glyph> glyphAt(const GreyImage &line, const Box &place, int widest)
{
    const auto start = inkNearMiddle(line, {std::max(place.left, 0), std::max(place.top, 0),
                                            std::min(place.right, line.width),
                                            std::min(place.bottom, line.height)});
    if (!start) {
        return std::nullopt;
    }
    const auto [startX, startY] = *start;
    Glyph glyph{{startX, startY, startX + 1, startY + 1}, {}};
    std::set<std::pair<int, int>> seen{*start};
    std::vector<std::pair<int, int>> next{*start};
    while (!next.empty()) {
        const auto [x, y] = next.back();
        next.pop_back();
        glyph.pixels.emplace_back(x, y);
        glyph.box.unite({x, y, x + 1, y + 1});
        if (glyph.box.width() > widest) {
            return std::nullopt;
        }
        constexpr std::array<std::pair<int, int>, 4> neighbours{{{-1, 0}, {1, 0}, {0, -1}, {0, 1}}};
        for (const auto &[dx, dy] : neighbours) {
            const std::pair at{x + dx, y + dy};
            if (at.first >= 0 && at.first < line.width && at.second >= 0 &&
                at.second < line.height && line.at(at.first, at.second) < ink &&
                seen.insert(at).second) {
                next.push_back(at);
            }
        }
    }
    return glyph;
}

bool isSmallL(const Glyph &glyph)
{
    if (glyph.box.width() < narrowest * glyph.box.height()) {
        return true;
    }
    const int edge = glyph.box.left + glyph.box.width() / 3;
    std::vector<int> columns(static_cast<std::size_t>(glyph.box.width()), 0);
    for (const auto &[x, y] : glyph.pixels) {
        ++columns[std::size_t(x - glyph.box.left)];
    }
    const auto end = columns.begin() + (edge - glyph.box.left);
    return end == columns.begin() ||
           *std::max_element(columns.begin(), end) < leastEdge * glyph.box.height();
}

bool isCapitalI(const Glyph &glyph, const GreyImage &line, const Box &inked)
{
    return glyph.box.bottom <= footOf(line, inked) + lowestFoot;
}

} // namespace recognition
