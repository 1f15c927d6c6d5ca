// SPDX-License-Identifier: MIT
#include "LineImage.h"

#include "Resample.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace recognition {

namespace {

/// The height of a letter with its edges after scaling. The models work at 36 pixels per line;
/// 24 and 36 instead of 30 read 0.5 and 0.9 points worse.
constexpr double letterHeight = 30;

/// White around the line, in scaled pixels; without it first and last letters suffer.
constexpr int margin = 6;

/// The longest prepared line, in pixels: what a line of 9 px type across an 8K screen needs.
constexpr int longest = 30000;

/// Letters are looked at together in pieces of this many letter heights.
constexpr int longestStretch = 3;

/// Letters whose contrast is this many times lower than that of others in the line are none.
constexpr int faintest = 4;

/// The edge of a selection lies within this many pixels of its letters.
constexpr int patchEdge = 4;

/// A change of the background by more grey levels is a border, not a shade.
constexpr int mostDrift = 90;

struct Tones
{
    int background = 255;
    int ink = 0;
    /// Whether the letters stand on a patch hardly bigger than they: what is at its edge is no ink.
    bool onPatch = false;

    int contrast() const { return std::abs(ink - background); }
    bool isDarkOnBright() const { return ink < background; }
};

using Histogram = std::array<int, 256>;

/// The grey that `share` of the counted pixels do not exceed.
int percentile(const Histogram &histogram, double share)
{
    const long total = std::accumulate(histogram.begin(), histogram.end(), 0L);
    const auto wanted = long(double(total) * share);
    long seen = 0;
    for (int value = 0; value < 256; ++value) {
        seen += histogram[std::size_t(value)];
        if (seen > wanted)
            return value;
    }
    return 255;
}

/// Some letters of the line that share a background.
struct Stretch
{
    Box box;
    /// Boxes of what stands one above the other or touches: letters or whole words.
    std::vector<Box> words;
    /// All pixels of these boxes, and those on their rims: just outside the ink.
    Histogram inside{};
    Histogram rim{};
    Tones tones;

    double centre() const { return (box.left + box.right) / 2.0; }
};

void add(const Box &mark, Stretch &stretch)
{
    stretch.box.unite(mark);
    if (!stretch.words.empty() && mark.left <= stretch.words.back().right + 1)
        stretch.words.back().unite(mark);
    else
        stretch.words.push_back(mark);
}

void count(const GreyImage &page, Stretch &stretch)
{
    for (const Box &word : stretch.words) {
        for (int y = word.top; y < word.bottom; ++y) {
            const std::uint8_t *line = page.row(y);
            const bool edge = y == word.top || y == word.bottom - 1;
            for (int x = word.left; x < word.right; ++x) {
                ++stretch.inside[line[x]];
                if (edge || x == word.left || x == word.right - 1)
                    ++stretch.rim[line[x]];
            }
        }
    }
}

long all(const Histogram &histogram)
{
    return std::accumulate(histogram.begin(), histogram.end(), 0L);
}

/// How many pixels are about as grey as `value`.
long around(const Histogram &histogram, int value)
{
    long sum = 0;
    for (int v = std::max(0, value - 6); v <= std::min(255, value + 6); ++v)
        sum += histogram[std::size_t(v)];
    return sum;
}

/// The background is what surrounds the letters, unless that is of several greys, as around a
/// selection, and most of what is between them is of one; ink is what is farthest from it. Half a
/// percent at either end may be anything.
Tones tonesOf(const Stretch &stretch)
{
    Tones tones;
    tones.background = percentile(stretch.rim, 0.5);
    if (10 * around(stretch.rim, tones.background) < 7 * all(stretch.rim)) {
        const auto commonest = std::max_element(stretch.inside.begin(), stretch.inside.end());
        const int value = int(commonest - stretch.inside.begin());
        if (10 * around(stretch.inside, value) >= 3 * all(stretch.inside)) {
            tones.background = value;
            tones.onPatch = true;
        }
    }
    const int dark = percentile(stretch.inside, 0.005);
    const int bright = percentile(stretch.inside, 0.995);
    tones.ink = bright - tones.background > tones.background - dark ? bright : dark;
    return tones;
}

bool areAlike(const Stretch &a, const Stretch &b)
{
    return a.tones.isDarkOnBright() == b.tones.isDarkOnBright() &&
           std::abs(a.tones.background - b.tones.background) <= 10;
}

/// The line's letters from the left, cut where there is a gap or after `longestStretch` letter
/// heights, then joined again where the background stays the same.
std::vector<Stretch> stretchesOf(const GreyImage &page, const TextLine &line)
{
    const int gap = std::max(3, line.letterHeight * 3 / 10);
    const int most = line.letterHeight * longestStretch;
    std::vector<Stretch> stretches;
    for (const Mark &mark : line.marks) {
        const bool follows = !stretches.empty() &&
                             mark.box.left <= stretches.back().box.right + gap &&
                             mark.box.right - stretches.back().box.left <= most;
        if (!follows)
            stretches.push_back({mark.box, {}, {}, {}, {}});
        add(mark.box, stretches.back());
    }
    int strongest = 0;
    for (Stretch &stretch : stretches) {
        count(page, stretch);
        stretch.tones = tonesOf(stretch);
        strongest = std::max(strongest, stretch.tones.contrast());
    }
    // Specks between letters, as of a JPEG picture, have no background of their own.
    std::erase_if(stretches, [strongest](const Stretch &stretch) {
        return faintest * stretch.tones.contrast() < strongest;
    });
    std::vector<Stretch> joined;
    for (Stretch &stretch : stretches) {
        if (joined.empty() || !areAlike(joined.back(), stretch)) {
            joined.push_back(stretch);
            continue;
        }
        Stretch &last = joined.back();
        for (std::size_t i = 0; i < last.inside.size(); ++i) {
            last.inside[i] += stretch.inside[i];
            last.rim[i] += stretch.rim[i];
        }
        last.box.unite(stretch.box);
        last.tones = tonesOf(last);
    }
    return joined;
}

/// The tones at column `x`: those of its stretch, but where the background of like letters
/// changes, as on a photograph, they change steadily from one stretch's middle to the next's.
Tones tonesAt(const std::vector<Stretch> &stretches, int x)
{
    std::size_t i = 0;
    while (i + 1 < stretches.size() &&
           x >= (stretches[i].box.right + stretches[i + 1].box.left) / 2)
        ++i;
    const Stretch &mine = stretches[i];
    const bool before = x < mine.centre();
    if ((before && i == 0) || (!before && i + 1 == stretches.size()))
        return mine.tones;
    const Stretch &other = stretches[before ? i - 1 : i + 1];
    if (other.tones.isDarkOnBright() != mine.tones.isDarkOnBright() ||
        std::abs(other.tones.background - mine.tones.background) > mostDrift)
        return mine.tones;
    const double share = (x - mine.centre()) / (other.centre() - mine.centre());
    const auto mix = [share](int a, int b) {
        return int(std::lround(a + (b - a) * share));
    };
    return {mix(mine.tones.background, other.tones.background),
            mix(mine.tones.ink, other.tones.ink), mine.tones.onPatch};
}

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
            for (int x = x0; x < x1; ++x)
                dark += flat.at(x, y) < 128;
        }
        return double(dark) / std::max(1, (x1 - x0) * (y1 - y0));
    };
    const auto whiten = [&flat](int x0, int x1, int y0, int y1) {
        for (int y = y0; y < y1; ++y)
            std::fill(flat.row(y) + x0, flat.row(y) + x1, std::uint8_t(255));
    };
    const int deepest = std::min(patchEdge, flat.height / 2);
    for (int y = 0; y < deepest; ++y) {
        for (const int row : {y, flat.height - 1 - y}) {
            if (darkShare(left, right, row, row + 1) > 0.5)
                whiten(left, right, row, row + 1);
        }
    }
    for (int x = 0; x < std::min(patchEdge, (right - left) / 2); ++x) {
        for (const int column : {left + x, right - 1 - x}) {
            if (darkShare(column, column + 1, 0, flat.height) > 0.7)
                whiten(column, column + 1, 0, flat.height);
        }
    }
}

} // namespace

LineImage lineImage(const GreyImage &page, const TextLine &line)
{
    const Box box{std::max(0, line.box.left - 1), std::max(0, line.box.top - 1),
                  std::min(page.width, line.box.right + 1),
                  std::min(page.height, line.box.bottom + 1)};
    if (box.isEmpty() || line.marks.empty())
        return {};

    LineImage result;
    const std::vector<Stretch> stretches = stretchesOf(page, line);
    for (const Stretch &stretch : stretches)
        result.contrast = std::max(result.contrast, stretch.tones.contrast());
    if (result.contrast < leastContrast)
        return {};

    const std::vector<Rows> rows = rowsOf(line, box);
    GreyImage flat(box.width(), box.height(), 255);
    for (int x = box.left; x < box.right; ++x) {
        const Tones tones = tonesAt(stretches, x);
        if (tones.contrast() < leastContrast)
            continue;
        const double slope = 255.0 / (tones.ink - tones.background);
        const Rows &at = rows[std::size_t(x - box.left)];
        for (int y = at.top; y < at.bottom; ++y) {
            const double ink = std::clamp((page.at(x, y) - tones.background) * slope, 0.0, 255.0);
            flat.row(y - box.top)[x - box.left] = std::uint8_t(255 - int(ink + 0.5));
        }
    }

    for (const Stretch &stretch : stretches) {
        if (stretch.tones.onPatch)
            eraseEdges(flat, stretch, box);
    }

    double scale = letterHeight / std::max(4, line.letterHeight);
    scale = std::min({scale, 6.0, double(longest) / box.width()});
    const int width = std::max(1, int(std::lround(box.width() * scale)));
    const int height = std::max(1, int(std::lround(box.height() * scale)));
    const GreyImage scaled = resampled(flat, width, height);
    result.picture = GreyImage(width + 2 * margin, height + 2 * margin, 255);
    for (int y = 0; y < height; ++y)
        std::copy_n(scaled.row(y), width, result.picture.row(y + margin) + margin);
    result.scale = scale;
    result.offsetX = margin - box.left * scale;
    result.offsetY = margin - box.top * scale;
    return result;
}

} // namespace recognition
