// SPDX-License-Identifier: MIT
#include "DigitShape.h"

#include "Components.h"
#include "DigitShapeWeights.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace recognition {

namespace {

/// Darker pixels are ink: pale enough to hold thin strokes together, and dark enough to part what
/// touches at small sizes.
constexpr int paleInk = 185;
constexpr int darkInk = 130;

/// In letter heights, the width from which a piece may be several digits, and the least height of
/// those: lower ones are bits of letters.
constexpr double leastTouching = 0.65;
constexpr double leastParted = 0.4;

/// Fewer pixels are specks.
constexpr int leastPixels = 5;

/// What shares more than this part of the narrower one's columns is one glyph.
constexpr double leastShared = 0.4;
constexpr double leastSharedTall = 0.8;

/// What stands farther away, in letter heights, is no neighbour.
constexpr double neighbourGap = 0.5;

constexpr int gridSize = 8;

/// The ink in some columns.
std::vector<Component> inkOf(const GreyImage &picture, int ink, int begin, int end)
{
    std::vector<Run> runs;
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t *row = picture.row(y);
        for (int x = begin; x < end; ++x) {
            const int left = x;
            while (x < end && row[x] < ink) {
                ++x;
            }
            if (x > left) {
                runs.push_back({y, left, x});
            }
        }
    }
    std::vector<Component> components = connectedComponents(runs);
    std::erase_if(components, [](const Component &c) { return c.pixels < leastPixels; });
    std::sort(components.begin(), components.end(),
              [](const Component &a, const Component &b) { return a.box.left < b.box.left; });
    return components;
}

struct Piece
{
    Box box;
    std::vector<Run> runs;
    bool isParted = false;
};

/// Whether components are parts of one glyph. What is `tall` of both, a slash and the digit that it
/// reaches under, stands side by side instead, unless it shares nearly all columns.
bool belongTogether(const Box &a, const Box &b, double tall)
{
    const bool areTall = std::min(a.height(), b.height()) >= tall;
    const double least = areTall ? leastSharedTall : leastShared;
    return horizontalOverlap(a, b) > least * std::min(a.width(), b.width());
}

/// Components above each other are joined.
std::vector<Piece> piecesOf(const GreyImage &picture, int ink, int begin, int end, double tall)
{
    std::vector<Piece> pieces;
    for (Component &component : inkOf(picture, ink, begin, end)) {
        Piece piece{component.box, std::move(component.runs), false};
        while (!pieces.empty() && belongTogether(pieces.back().box, piece.box, tall)) {
            piece.box.unite(pieces.back().box);
            piece.runs.insert(piece.runs.end(), pieces.back().runs.begin(),
                              pieces.back().runs.end());
            pieces.pop_back();
        }
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

/// Wide pieces replaced by those that they fall apart into without their palest ink.
std::vector<Piece> parted(std::vector<Piece> pieces, const GreyImage &picture, int letters)
{
    std::vector<Piece> result;
    for (Piece &piece : pieces) {
        std::vector<Piece> parts;
        if (piece.box.width() >= leastTouching * letters) {
            parts =
                piecesOf(picture, darkInk, piece.box.left, piece.box.right, leastParted * letters);
        }
        const bool areGlyphs =
            parts.size() > 1 && std::all_of(parts.begin(), parts.end(), [letters](const Piece &p) {
                return p.box.height() >= leastParted * letters;
            });
        if (areGlyphs) {
            for (Piece &part : parts) {
                part.isParted = true;
                result.push_back(std::move(part));
            }
        } else {
            result.push_back(std::move(piece));
        }
    }
    return result;
}

/// How much of [cell, cell + 1) of a grid over `size` pixels lies in the pixel at `at`.
double shareOf(int cell, int at, int size)
{
    const double scale = double(gridSize) / size;
    return std::max(0.0,
                    std::min(cell + 1.0, (at + 1) * scale) - std::max(double(cell), at * scale));
}

DigitFeatures gridOf(const Piece &piece)
{
    const Box &box = piece.box;
    DigitFeatures features{};
    for (const Run &run : piece.runs) {
        const int y = run.y - box.top;
        const int firstRow = y * gridSize / box.height();
        const int lastRow = std::min(gridSize - 1, (y + 1) * gridSize / box.height());
        for (int x = run.left - box.left; x < run.right - box.left; ++x) {
            const int first = x * gridSize / box.width();
            const int last = std::min(gridSize - 1, (x + 1) * gridSize / box.width());
            for (int row = firstRow; row <= lastRow; ++row) {
                const double high = shareOf(row, y, box.height());
                for (int column = first; column <= last; ++column) {
                    features[std::size_t(row) * gridSize + std::size_t(column)] +=
                        float(high * shareOf(column, x, box.width()));
                }
            }
        }
    }
    return features;
}

/// How a glyph's height and place compare to those of a neighbour; nothing without one.
void compare(const Box &box, const Box &neighbour, int letters, float *features)
{
    if (-horizontalOverlap(box, neighbour) > neighbourGap * letters) {
        return;
    }
    features[0] = float(std::log(double(box.height()) / neighbour.height()));
    features[1] = float(box.top - neighbour.top) / float(letters);
    features[2] = float(box.bottom - neighbour.bottom) / float(letters);
}

} // namespace

std::vector<PlainGlyph> plainGlyphs(const GreyImage &picture, int letters, bool isParted)
{
    std::vector<Piece> pieces = piecesOf(picture, paleInk, 0, picture.width, picture.height);
    if (isParted) {
        pieces = parted(std::move(pieces), picture, letters);
    }
    std::vector<PlainGlyph> glyphs;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Box &box = pieces[i].box;
        PlainGlyph glyph{box, gridOf(pieces[i]), pieces[i].isParted};
        float *features = glyph.features.data() + std::ptrdiff_t(gridSize) * gridSize;
        features[0] = float(std::log(double(box.width()) / box.height()));
        features[1] = float(box.width()) / float(letters);
        features[2] = float(box.height()) / float(letters);
        if (i > 0) {
            compare(box, pieces[i - 1].box, letters, features + 3);
        }
        if (i + 1 < pieces.size()) {
            compare(box, pieces[i + 1].box, letters, features + 6);
        }
        glyphs.push_back(glyph);
    }
    return glyphs;
}

DigitShares digitShares(const DigitFeatures &features)
{
    std::array<float, digitHiddenWeights.size()> hidden{};
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        const auto &weights = digitHiddenWeights[i];
        hidden[i] = std::max(0.0F, std::inner_product(features.begin(), features.end(),
                                                      weights.begin(), weights.back()));
    }
    DigitShares shares{};
    for (std::size_t i = 0; i < shares.size(); ++i) {
        const auto &weights = digitClassWeights[i];
        shares[i] =
            std::inner_product(hidden.begin(), hidden.end(), weights.begin(), weights.back());
    }
    const float most = *std::max_element(shares.begin(), shares.end());
    for (float &share : shares) {
        share = std::exp(share - most);
    }
    const float sum = std::accumulate(shares.begin(), shares.end(), 0.0F);
    for (float &share : shares) {
        share /= sum;
    }
    return shares;
}

} // namespace recognition
