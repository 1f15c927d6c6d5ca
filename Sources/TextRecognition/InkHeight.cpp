// SPDX-License-Identifier: MIT
#include "InkHeight.h"

#include <algorithm>

namespace recognition {

namespace {

/// Paler pixels are the blur around a stroke. A stroke one pixel wide that falls between two is
/// half as dark as ink.
constexpr int palestInk = 160;

/// The edges above and below a letter, in pixels.
constexpr int edges = 2;

/// Neighbouring columns with ink.
struct Piece
{
    int height = 0;
    int width = 0;
};

std::vector<Piece> piecesOf(const GreyImage &flat)
{
    std::vector<Piece> pieces;
    int top = flat.height;
    int bottom = 0;
    int start = 0;
    for (int x = 0; x <= flat.width; ++x) {
        bool blank = true;
        for (int y = 0; x < flat.width && y < flat.height; ++y) {
            if (flat.at(x, y) >= palestInk) {
                continue;
            }
            blank = false;
            top = std::min(top, y);
            bottom = std::max(bottom, y + 1);
        }
        if (!blank) {
            continue;
        }
        if (bottom > top) {
            pieces.push_back({bottom - top, x - start});
        }
        top = flat.height;
        bottom = 0;
        start = x + 1;
    }
    return pieces;
}

} // namespace

int inkHeight(const GreyImage &flat)
{
    std::vector<Piece> pieces = piecesOf(flat);
    std::sort(pieces.begin(), pieces.end(),
              [](const Piece &a, const Piece &b) { return a.height < b.height; });
    // Punctuation and accents tell nothing. A wide piece is several letters that touch.
    int all = 0;
    for (const Piece &piece : pieces) {
        all += 3 * piece.height >= pieces.back().height ? piece.width : 0;
    }
    int seen = 0;
    for (const Piece &piece : pieces) {
        seen += 3 * piece.height >= pieces.back().height ? piece.width : 0;
        if (5 * seen >= 3 * all && all > 0 && seen > 0) {
            return piece.height + edges;
        }
    }
    return 0;
}

} // namespace recognition
