// SPDX-License-Identifier: MIT
#include "ColouredInk.h"

#include "Components.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace recognition {

namespace {

/// The background is looked for in squares of so many pixels: a few letters of usual size.
constexpr int tileSize = 32;
/// Every so many rows and columns of a tile are enough to find it.
constexpr int sampleStep = 2;
/// The share of a tile, in percent, that its background takes at least: pictures have none.
constexpr int leastBackground = 40;
/// A channel that differs by more from the background's is ink; by less, its soft edge.
constexpr int leastDifference = 24;
/// Ink whose strongest channel differs by less is faint, whatever its colour.
constexpr int leastColour = 60;
/// What luma shows of the strongest channel's difference, in percent, in letters that it hides: a
/// pure red on black shows 30, blue 11, yellow on white 11, cyan 30.
constexpr int mostLuma = 32;
/// Ink is shown lighter than darker paper, and darker than lighter.
constexpr int middleGrey = 128;
/// What covers so many percent of its box is a disc or a square, unless it is of small type
/// or as long as a stroke.
constexpr int leastSolid = 75;
constexpr int smallestSolid = 10;
constexpr int longestSolid = 3;
/// What is higher is no letter.
constexpr int highestLetter = 64;

/// The colour that most of a tile has, or nothing.
std::optional<QRgb> backgroundOf(const QImage &colours, const Box &tile)
{
    std::unordered_map<QRgb, int> counts;
    int samples = 0;
    std::pair<QRgb, int> most;
    for (int y = tile.top; y < tile.bottom; y += sampleStep) {
        const auto *line = reinterpret_cast<const QRgb *>(colours.constScanLine(y));
        for (int x = tile.left; x < tile.right; x += sampleStep) {
            const int count = ++counts[line[x]];
            ++samples;
            if (count > most.second) {
                most = {line[x], count};
            }
        }
    }
    return 100 * most.second >= leastBackground * samples ? std::optional(most.first)
                                                          : std::nullopt;
}

/// By how much the channel differs that differs most.
int difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

/// What is not background.
struct Ink
{
    explicit Ink(const QImage &colours)
        : paper(colours.width(), colours.height(), 0)
        , colour(colours.width(), colours.height(), 0)
    {
    }

    /// By pixel: the grey level of the background, and by how much the colour differs from it.
    GreyImage paper;
    GreyImage colour;
    bool hasColour = false;
};

Ink inkOf(const QImage &colours)
{
    Ink ink(colours);
    for (int top = 0; top < colours.height(); top += tileSize) {
        for (int left = 0; left < colours.width(); left += tileSize) {
            const Box tile{left, top, std::min(left + tileSize, colours.width()),
                           std::min(top + tileSize, colours.height())};
            const std::optional<QRgb> background = backgroundOf(colours, tile);
            if (!background) {
                continue;
            }
            for (int y = tile.top; y < tile.bottom; ++y) {
                const auto *line = reinterpret_cast<const QRgb *>(colours.constScanLine(y));
                for (int x = tile.left; x < tile.right; ++x) {
                    ink.paper.row(y)[x] = lumaOf(*background);
                    const int off = line[x] == *background ? 0 : difference(line[x], *background);
                    ink.colour.row(y)[x] = std::uint8_t(off);
                    ink.hasColour = ink.hasColour || off >= leastColour;
                }
            }
        }
    }
    return ink;
}

std::vector<Run> runsOf(const GreyImage &colour)
{
    std::vector<Run> runs;
    for (int y = 0; y < colour.height; ++y) {
        const std::uint8_t *line = colour.row(y);
        for (int x = 0; x < colour.width; ++x) {
            if (line[x] < leastDifference) {
                continue;
            }
            const int left = x;
            while (x < colour.width && line[x] >= leastDifference) {
                ++x;
            }
            runs.push_back({y, left, x});
        }
    }
    return runs;
}

/// Whether a component has the form of a letter or of a part of one.
bool mayBeLetter(const Component &component)
{
    const int shorter = std::min(component.box.width(), component.box.height());
    const int longer = std::max(component.box.width(), component.box.height());
    const bool isSolid = shorter >= smallestSolid && longer < longestSolid * shorter &&
                         100 * component.pixels >= leastSolid * shorter * longer;
    return !isSolid && component.box.height() <= highestLetter;
}

/// Whether luma hides most of what a component's colour shows.
bool isHidden(const Component &component, const Ink &ink, const GreyImage &grey, int top)
{
    int luma = 0;
    int colour = 0;
    for (const Run &run : component.runs) {
        for (int x = run.left; x < run.right; ++x) {
            luma = std::max(luma, std::abs(grey.at(x, top + run.y) - ink.paper.at(x, run.y)));
            colour = std::max<int>(colour, ink.colour.at(x, run.y));
        }
    }
    return colour >= leastColour && 100 * luma < mostLuma * colour;
}

} // namespace

void showColouredInk(const QImage &colours, GreyImage &grey, int top)
{
    const Ink ink = inkOf(colours);
    if (!ink.hasColour) {
        return;
    }
    for (const Component &component : connectedComponents(runsOf(ink.colour))) {
        if (!mayBeLetter(component) || !isHidden(component, ink, grey, top)) {
            continue;
        }
        for (const Run &run : component.runs) {
            for (int x = run.left; x < run.right; ++x) {
                const int paper = ink.paper.at(x, run.y);
                const int colour = ink.colour.at(x, run.y);
                const int shown = paper < middleGrey ? paper + colour : paper - colour;
                grey.row(top + run.y)[x] = std::uint8_t(std::clamp(shown, 0, 255));
            }
        }
    }
}

} // namespace recognition
