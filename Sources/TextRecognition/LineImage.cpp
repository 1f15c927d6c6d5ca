// SPDX-License-Identifier: MIT
#include "LineImage.h"

#include "Resample.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace recognition {

namespace {

/// The height of a letter with its edges after scaling. The models work at 36 pixels per line;
/// 24 and 36 instead of 30 read 0.5 and 0.9 points worse.
constexpr double letterHeight = 30;

/// White around the line, in scaled pixels; without it first and last letters suffer.
constexpr int margin = 6;

/// The longest prepared line, in pixels: what a line of 9 px type across an 8K screen needs.
constexpr int longest = 30000;

struct Tones
{
    int background = 255;
    int ink = 0;

    int contrast() const { return std::abs(ink - background); }
    bool isLike(const Tones &other) const
    {
        return (ink < background) == (other.ink < other.background) &&
               std::abs(background - other.background) <= 16;
    }
};

using Histogram = std::array<int, 256>;

/// The background is the commonest grey; ink is the far end of what is left.
Tones tonesOf(const Histogram &histogram)
{
    int total = 0;
    for (const int count : histogram)
        total += count;
    const auto around = [&histogram](int value) {
        int sum = 0;
        for (int v = std::max(0, value - 2); v <= std::min(255, value + 2); ++v)
            sum += histogram[std::size_t(v)];
        return sum;
    };
    Tones tones;
    int most = -1;
    for (int value = 0; value < 256; ++value) {
        const int count = around(value);
        if (count > most) {
            most = count;
            tones.background = value;
        }
    }
    // Half a percent at either end may be anything.
    const int spare = std::max(1, total / 200);
    int dark = 0;
    for (int seen = 0; dark < 255 && (seen += histogram[std::size_t(dark)]) < spare;)
        ++dark;
    int bright = 255;
    for (int seen = 0; bright > 0 && (seen += histogram[std::size_t(bright)]) < spare;)
        --bright;
    tones.ink = bright - tones.background > tones.background - dark ? bright : dark;
    return tones;
}

/// Columns of a line that share background and ink.
struct Stretch
{
    int left = 0;
    int right = 0;
    Histogram histogram{};
    Tones tones;
};

Histogram histogramOf(const GreyImage &page, const Box &box)
{
    Histogram histogram{};
    for (int y = box.top; y < box.bottom; ++y) {
        const std::uint8_t *line = page.row(y);
        // The rim of a line is background: it counts twice, for heavy type.
        const int weight = y < box.top + 2 || y >= box.bottom - 2 ? 2 : 1;
        for (int x = box.left; x < box.right; ++x)
            histogram[line[x]] += weight;
    }
    return histogram;
}

/// The words' stretches, neighbours of like tones joined. They cover `box` without holes.
std::vector<Stretch> stretchesOf(const GreyImage &page, const TextLine &line, const Box &box)
{
    const int gap = std::max(3, line.letterHeight * 3 / 10);
    std::vector<Stretch> stretches;
    int end = line.marks.front().box.left;
    int begin = end;
    const auto add = [&](int left, int right) {
        Stretch stretch{std::clamp(left - 1, box.left, box.right),
                        std::clamp(right + 1, box.left, box.right),
                        {},
                        {}};
        stretch.histogram = histogramOf(page, {stretch.left, box.top, stretch.right, box.bottom});
        stretch.tones = tonesOf(stretch.histogram);
        if (!stretches.empty() && stretches.back().tones.isLike(stretch.tones)) {
            Stretch &last = stretches.back();
            for (std::size_t i = 0; i < last.histogram.size(); ++i)
                last.histogram[i] += stretch.histogram[i];
            last.right = stretch.right;
            last.tones = tonesOf(last.histogram);
        } else {
            stretches.push_back(stretch);
        }
    };
    for (const Mark &mark : line.marks) {
        if (mark.box.left > end + gap) {
            add(begin, end);
            begin = mark.box.left;
        }
        end = std::max(end, mark.box.right);
    }
    add(begin, end);
    for (std::size_t i = 1; i < stretches.size(); ++i) {
        const int middle = (stretches[i - 1].right + stretches[i].left) / 2;
        stretches[i - 1].right = stretches[i].left = middle;
    }
    stretches.front().left = box.left;
    stretches.back().right = box.right;
    return stretches;
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
    GreyImage flat(box.width(), box.height(), 255);
    for (const Stretch &stretch : stretchesOf(page, line, box)) {
        const Tones &tones = stretch.tones;
        result.contrast = std::max(result.contrast, tones.contrast());
        if (tones.contrast() < leastContrast)
            continue;
        std::array<std::uint8_t, 256> map{};
        for (int value = 0; value < 256; ++value) {
            const double ink =
                double(value - tones.background) / double(tones.ink - tones.background);
            map[std::size_t(value)] =
                std::uint8_t(std::lround(255 * (1 - std::clamp(ink, 0.0, 1.0))));
        }
        for (int y = box.top; y < box.bottom; ++y) {
            const std::uint8_t *in = page.row(y);
            std::uint8_t *out = flat.row(y - box.top) - box.left;
            for (int x = stretch.left; x < stretch.right; ++x)
                out[x] = map[in[x]];
        }
    }
    if (result.contrast < leastContrast)
        return {};

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
