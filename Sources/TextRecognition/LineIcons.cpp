// SPDX-License-Identifier: MIT
#include "LineIcons.h"

#include "Box.h"

#include <algorithm>

namespace recognition {

namespace {

/// Paler pixels are a shadow or the blur around a stroke.
constexpr int palestInk = 155;

/// The same for the outline of a shape, such as a box to tick, which may be paler than text.
constexpr int palestOutline = 220;

/// Letters have pixels darker than this.
constexpr int darkInk = 100;

/// The share of them in letters at least, and in a shape of another tone at most.
constexpr double leastDark = 0.3;
constexpr double mostDark = 0.1;

/// The strokes of bold type are a quarter as thick as its letters are high. What stands near to
/// a word has to be thicker, what is of another tone need not.
constexpr double thickestStroke = 0.42;
constexpr double thickestNearStroke = 0.5;
constexpr double thickestPaleStroke = 0.33;

/// Smaller filled shapes may be full stops, or the dense letters of small Chinese type, in pixels.
constexpr int smallestFilled = 14;

/// A shape is thick if it is this much thicker than the others of the line: the dense letters of
/// small Chinese type flow together.
constexpr double thicker = 1.5;

/// How much higher than all the rest of the line a shape has to be.
constexpr double tall = 1.3;

/// The same of one that is hollow, as a sheet of paper or a box to tick is.
constexpr double tallHollow = 1.15;

/// What stands as near to a word, in letter heights, is a letter of it; the second if it is thick
/// and at an end.
constexpr double leastGap = 0.25;
constexpr double leastThickGap = 0.08;

struct Piece
{
    Box box;
    /// The sides of the largest squares in it that are all ink and all white.
    int solid = 0;
    int hollow = 0;
    /// The share of its pixels that are as dark as the ink of letters.
    double dark = 0;
};

/// What stands between columns without pixels darker than `palest`.
std::vector<Piece> piecesOf(const GreyImage &flat, int palest)
{
    std::vector<Piece> pieces;
    Piece piece;
    piece.box = {0, flat.height, 0, 0};
    for (int x = 0; x <= flat.width; ++x) {
        bool blank = true;
        for (int y = 0; x < flat.width && y < flat.height; ++y) {
            if (flat.at(x, y) > palest) {
                continue;
            }
            blank = false;
            piece.box.top = std::min(piece.box.top, y);
            piece.box.bottom = std::max(piece.box.bottom, y + 1);
        }
        if (!blank) {
            continue;
        }
        piece.box.right = x;
        if (piece.box.height() > 0) {
            pieces.push_back(piece);
        }
        piece.box = {x + 1, flat.height, 0, 0};
    }
    return pieces;
}

template <typename Belongs>
int largestSquare(const GreyImage &flat, const Box &box, Belongs belongs)
{
    int largest = 0;
    std::vector<int> sides(std::size_t(box.width()) + 1, 0);
    for (int y = box.top; y < box.bottom; ++y) {
        int diagonal = 0;
        for (int x = 0; x < box.width(); ++x) {
            const auto i = std::size_t(x) + 1;
            const int above = sides[i];
            sides[i] = belongs(flat.at(box.left + x, y))
                           ? 1 + std::min({above, sides[i - 1], diagonal})
                           : 0;
            diagonal = above;
            largest = std::max(largest, sides[i]);
        }
    }
    return largest;
}

void measure(const GreyImage &flat, int palest, Piece &piece)
{
    piece.solid = largestSquare(flat, piece.box, [palest](int grey) { return grey <= palest; });
    int shown = 0;
    int dark = 0;
    for (int y = piece.box.top; y < piece.box.bottom; ++y) {
        for (int x = piece.box.left; x < piece.box.right; ++x) {
            shown += flat.at(x, y) <= palestOutline;
            dark += flat.at(x, y) < darkInk;
        }
    }
    piece.dark = double(dark) / std::max(1, shown);
    piece.hollow = largestSquare(flat, piece.box, [](int grey) { return grey > palestOutline; });
}

/// Whether `piece` is about as wide as high.
bool isSquare(const Piece &piece)
{
    return 10 * piece.box.width() >= 6 * piece.box.height() &&
           10 * piece.box.width() <= 17 * piece.box.height();
}

/// How far the piece stands from the nearer of its neighbours; beyond the ends there is none.
int gapAround(const std::vector<Piece> &pieces, std::size_t i)
{
    int gap = pieces.back().box.right;
    if (i > 0) {
        gap = std::min(gap, pieces[i].box.left - pieces[i - 1].box.right);
    }
    if (i + 1 < pieces.size()) {
        gap = std::min(gap, pieces[i + 1].box.left - pieces[i].box.right);
    }
    return gap;
}

/// Whether a piece is filled for the most part, as no letter is.
bool isFilled(const Piece &piece, int height)
{
    return piece.box.height() >= smallestFilled && 10 * piece.box.height() >= 6 * height &&
           isSquare(piece) && 10 * piece.solid >= 6 * piece.box.height();
}

/// Whether a piece is thicker than letters of this height are. `usual`: how thick others are.
bool isThick(const std::vector<Piece> &pieces, std::size_t i, int usual, int height)
{
    const Piece &piece = pieces[i];
    if (10 * piece.box.height() < 6 * height || piece.box.width() > 2 * piece.box.height() ||
        piece.solid < thicker * usual) {
        return false;
    }
    const double gap = double(gapAround(pieces, i)) / height;
    if (gap >= leastGap) {
        return piece.solid >= thickestStroke * height;
    }
    const bool atEnd = i == 0 || i + 1 == pieces.size();
    return atEnd && gap >= leastThickGap && piece.solid >= thickestNearStroke * height;
}

/// Whether a piece is a patch of greys beside letters that are dark.
bool isPale(const std::vector<Piece> &pieces, std::size_t i, int height)
{
    const Piece &piece = pieces[i];
    if (10 * piece.box.height() < 6 * height || piece.dark > mostDark ||
        piece.solid < thickestPaleStroke * height) {
        return false;
    }
    double dark = 0;
    int width = 0;
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        dark += k == i ? 0 : pieces[k].dark * pieces[k].box.width();
        width += k == i ? 0 : pieces[k].box.width();
    }
    return dark >= leastDark * width;
}

/// Whether a piece is a shape that stands out above and below all others.
bool isTall(const std::vector<Piece> &pieces, std::size_t i, int height)
{
    const Piece &piece = pieces[i];
    if (!isSquare(piece) || gapAround(pieces, i) < leastGap * height) {
        return false;
    }
    Box rest = pieces[i == 0 ? 1 : 0].box;
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        if (k != i) {
            rest.unite(pieces[k].box);
        }
    }
    const bool isHollow = 2 * piece.hollow >= std::min(piece.box.width(), piece.box.height());
    return piece.box.height() >= (isHollow ? tallHollow : tall) * rest.height() &&
           piece.box.top < rest.top && piece.box.bottom > rest.bottom;
}

} // namespace

void whitenIcons(GreyImage &flat, int height)
{
    std::vector<Piece> icons;
    for (const int palest : {palestInk, palestOutline}) {
        std::vector<Piece> pieces = piecesOf(flat, palest);
        if (pieces.empty()) {
            break;
        }
        std::vector<int> solids;
        for (Piece &piece : pieces) {
            measure(flat, palest, piece);
            solids.push_back(piece.solid);
        }
        const auto middle = solids.begin() + std::ptrdiff_t(solids.size() / 2);
        std::nth_element(solids.begin(), middle, solids.end());
        int all = 0;
        int found = 0;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (palest == palestInk && isFilled(pieces[i], height)) {
                icons.push_back(pieces[i]);
                continue;
            }
            if (pieces.size() < 2) {
                break;
            }
            const bool isIcon = palest == palestInk
                                    ? isThick(pieces, i, *middle, height)
                                    : isTall(pieces, i, height) || isPale(pieces, i, height);
            all += pieces[i].box.width();
            found += isIcon ? pieces[i].box.width() : 0;
            if (isIcon) {
                icons.push_back(pieces[i]);
            }
        }
        if (2 * found > all) {
            icons.erase(
                std::remove_if(icons.begin(), icons.end(),
                               [height](const Piece &icon) { return !isFilled(icon, height); }),
                icons.end());
        }
    }
    for (const Piece &icon : icons) {
        // The blur around it too.
        const int left = std::max(0, icon.box.left - 1);
        const int right = std::min(flat.width, icon.box.right + 1);
        for (int y = 0; y < flat.height; ++y) {
            std::fill(flat.row(y) + left, flat.row(y) + right, std::uint8_t(255));
        }
    }
}

} // namespace recognition
