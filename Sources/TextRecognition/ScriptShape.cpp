// SPDX-License-Identifier: MIT
#include "ScriptShape.h"

#include "ScriptShapeWeights.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// Darker pixels are ink.
constexpr int palestInk = 150;

/// The groups of features: columns by their strokes, strokes and ink by the height of the line,
/// pieces by their width and height.
constexpr std::size_t strokeSteps = 6;
constexpr std::size_t bands = 6;
constexpr std::size_t widthSteps = 7;
constexpr std::size_t heightSteps = 4;
static_assert(strokeSteps + 2 * bands + widthSteps + heightSteps + 3 == shapeFeatureCount);

/// Where pieces between blank columns part into steps, in letter heights.
constexpr std::array<double, widthSteps - 1> widthLimits{0.2, 0.4, 0.65, 0.9, 1.2, 2.0};
constexpr std::array<double, heightSteps - 1> heightLimits{0.6, 0.9, 1.15};

template <std::size_t size>
std::size_t stepOf(double value, const std::array<double, size> &limits)
{
    return std::size_t(std::upper_bound(limits.begin(), limits.end(), value) - limits.begin());
}

/// The rows that ink lies in, `bottom` just outside.
struct Rows
{
    int top = 0;
    int bottom = 0;
};

Rows inkRows(const GreyImage &picture)
{
    const auto hasInk = [&picture](int y) {
        const std::uint8_t *row = picture.row(y);
        return std::any_of(row, row + picture.width, [](std::uint8_t v) { return v < palestInk; });
    };
    Rows rows{0, picture.height};
    while (rows.top < rows.bottom && !hasInk(rows.top)) {
        ++rows.top;
    }
    while (rows.bottom > rows.top && !hasInk(rows.bottom - 1)) {
        --rows.bottom;
    }
    return rows;
}

/// One column: its strokes from top to bottom, and where they begin and end.
struct Column
{
    int strokes = 0;
    int top = 0;
    int bottom = 0;
};

Column columnAt(const GreyImage &picture, int x, const Rows &rows)
{
    Column column{0, rows.bottom, rows.top};
    bool inside = false;
    for (int y = rows.top; y < rows.bottom; ++y) {
        const bool ink = picture.at(x, y) < palestInk;
        column.strokes += ink && !inside;
        if (ink) {
            column.top = std::min(column.top, y);
            column.bottom = y + 1;
        }
        inside = ink;
    }
    return column;
}

} // namespace

WritingKind kindOf(Script script)
{
    switch (script) {
    case Script::Latin:
    case Script::Cyrillic:
        return WritingKind::LatinOrCyrillic;
    case Script::Arabic:
        return WritingKind::Arabic;
    case Script::Japanese:
    case Script::SimplifiedHan:
    case Script::TraditionalHan:
        return WritingKind::Chinese;
    case Script::Korean:
        return WritingKind::Korean;
    }
    return WritingKind::LatinOrCyrillic;
}

ShapeFeatures shapeFeatures(const GreyImage &picture, int letters)
{
    ShapeFeatures features{};
    const Rows rows = inkRows(picture);
    if (rows.top == rows.bottom || letters <= 0) {
        return features;
    }
    double *byStrokes = features.data();
    double *strokesByBand = byStrokes + strokeSteps;
    double *inkByBand = strokesByBand + bands;
    double *byWidth = inkByBand + bands;
    double *byHeight = byWidth + widthSteps;
    double *whole = byHeight + heightSteps;

    // Columns, and the pieces between blank ones.
    int inked = 0;
    int first = picture.width;
    int last = 0;
    int pieceStart = -1;
    int pieces = 0;
    Rows piece;
    for (int x = 0; x <= picture.width; ++x) {
        const Column column =
            x < picture.width ? columnAt(picture, x, rows) : Column{0, rows.bottom, rows.top};
        if (column.strokes > 0) {
            ++inked;
            first = std::min(first, x);
            last = x + 1;
            byStrokes[std::min(std::size_t(column.strokes), strokeSteps) - 1] += 1;
            if (pieceStart < 0) {
                pieceStart = x;
                piece = {column.top, column.bottom};
            }
            piece = {std::min(piece.top, column.top), std::max(piece.bottom, column.bottom)};
        } else if (pieceStart >= 0) {
            const int width = x - pieceStart;
            byWidth[stepOf(double(width) / letters, widthLimits)] += width;
            byHeight[stepOf(double(piece.bottom - piece.top) / letters, heightLimits)] += width;
            ++pieces;
            pieceStart = -1;
        }
    }
    for (double *share = byStrokes; share < byStrokes + strokeSteps; ++share) {
        *share /= inked;
    }
    for (double *share = byWidth; share < whole; ++share) {
        *share /= inked;
    }

    // Rows.
    const double length = double(last - first) / letters;
    double ink = 0;
    for (int y = rows.top; y < rows.bottom; ++y) {
        const auto band = std::size_t((y - rows.top) * int(bands) / (rows.bottom - rows.top));
        bool inside = false;
        for (int x = first; x < last; ++x) {
            const bool isInk = picture.at(x, y) < palestInk;
            strokesByBand[band] += isInk && !inside;
            inkByBand[band] += isInk;
            ink += isInk;
            inside = isInk;
        }
    }
    for (std::size_t band = 0; band < bands; ++band) {
        strokesByBand[band] *= double(bands) / ((rows.bottom - rows.top) * length);
        inkByBand[band] /= ink;
    }

    whole[0] = pieces / length;
    whole[1] = double(inked) / (last - first);
    whole[2] = double(rows.bottom - rows.top) / letters;
    return features;
}

KindShares kindShares(const ShapeFeatures &features)
{
    KindShares shares{};
    for (std::size_t kind = 0; kind < writingKinds; ++kind) {
        const auto &weights = shapeWeights[kind];
        shares[kind] = weights.back();
        for (std::size_t i = 0; i < shapeFeatureCount; ++i) {
            shares[kind] += weights[i] * features[i];
        }
    }
    const double most = *std::max_element(shares.begin(), shares.end());
    double sum = 0;
    for (double &share : shares) {
        share = std::exp(share - most);
        sum += share;
    }
    for (double &share : shares) {
        share /= sum;
    }
    return shares;
}

} // namespace recognition
