// SPDX-License-Identifier: MIT
#include "Tones.h"

#include <cmath>
#include <numeric>

namespace recognition {

namespace {

/// Letters are looked at together in pieces of this many letter heights.
constexpr int longestStretch = 3;

/// Letters whose contrast is this many times lower than that of others in the line are none, unless
/// they are a word of this many letter heights: red on black is five times fainter than white.
constexpr int faintest = 4;
constexpr int faintestWord = 6;
constexpr int longestSpeck = 3;

/// Backgrounds that differ by no more grey levels are one.
constexpr int mostAlike = 30;

/// The percentage of a tight patch that its own grey takes up at least, letters the rest.
constexpr int leastPatch = 45;

/// On one background a contrast below so many tenths of another is of letters of another colour, as
/// in a terminal.
constexpr int leastOfOneInk = 6;

/// What is narrower, in letter heights, may be an icon.
constexpr int shortestWord = 2;

/// A change of the background by more grey levels is a border, not a shade.
constexpr int mostDrift = 90;

/// The grey that `share` of the counted pixels do not exceed.
int percentile(const Histogram &histogram, double share)
{
    const long total = std::accumulate(histogram.begin(), histogram.end(), 0L);
    const auto wanted = long(double(total) * share);
    long seen = 0;
    for (int value = 0; value < 256; ++value) {
        seen += histogram[std::size_t(value)];
        if (seen > wanted) {
            return value;
        }
    }
    return 255;
}

void add(const Box &mark, Stretch &stretch)
{
    stretch.box.unite(mark);
    if (!stretch.words.empty() && mark.left <= stretch.words.back().right + 1) {
        stretch.words.back().unite(mark);
    } else {
        stretch.words.push_back(mark);
    }
}

void count(const GreyImage &page, Stretch &stretch)
{
    for (const Box &word : stretch.words) {
        for (int y = word.top; y < word.bottom; ++y) {
            const std::uint8_t *line = page.row(y);
            const bool edge = y == word.top || y == word.bottom - 1;
            for (int x = word.left; x < word.right; ++x) {
                ++stretch.inside[line[x]];
                if (edge || x == word.left || x == word.right - 1) {
                    ++stretch.rim[line[x]];
                }
            }
        }
    }
}

long all(const Histogram &histogram)
{
    return std::accumulate(histogram.begin(), histogram.end(), 0L);
}

/// How many pixels are about as grey as `value`.
long countNear(const Histogram &histogram, int value)
{
    long sum = 0;
    for (int v = std::max(0, value - 6); v <= std::min(255, value + 6); ++v) {
        sum += histogram[std::size_t(v)];
    }
    return sum;
}

/// The tones of letters on `background`: ink is what is farthest from it. Half a percent at either
/// end may be anything.
Tones tonesOn(const Stretch &stretch, int background)
{
    const int dark = percentile(stretch.inside, 0.005);
    const int bright = percentile(stretch.inside, 0.995);
    return {background, bright - background > background - dark ? bright : dark, false};
}

/// The background is what surrounds the letters, unless that is of several greys, as around a
/// selection, and most of what is between them is of one.
Tones tonesOf(const Stretch &stretch)
{
    const int around = percentile(stretch.rim, 0.5);
    if (10 * countNear(stretch.rim, around) < 7 * all(stretch.rim)) {
        const auto commonest = std::max_element(stretch.inside.begin(), stretch.inside.end());
        const int value = int(commonest - stretch.inside.begin());
        if (10 * countNear(stretch.inside, value) >= 3 * all(stretch.inside)) {
            Tones tones = tonesOn(stretch, value);
            tones.onPatch = true;
            return tones;
        }
    }
    return tonesOn(stretch, around);
}

/// Whether letters of both tones may be of one colour.
bool haveOneInk(const Tones &a, const Tones &b)
{
    const auto [weaker, stronger] = std::minmax({a.contrast(), b.contrast()});
    return 10 * weaker >= leastOfOneInk * stronger;
}

bool haveOneBackground(const Tones &a, const Tones &b)
{
    return a.isDarkOnBright() == b.isDarkOnBright() && std::abs(a.background - b.background) <= 10;
}

/// Gives what is shorter than a word, `shortest` pixels, the ink of what is beside it on the same
/// background: an icon is paler than its text, and a hyphen may be too thin to show its ink.
void shareInk(std::vector<Stretch> &stretches, int shortest)
{
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        if (stretches[i].box.width() >= shortest) {
            continue;
        }
        Tones &mine = stretches[i].tones;
        const auto take = [&mine](const Tones &other) {
            if (haveOneBackground(mine, other) && other.contrast() > mine.contrast()) {
                mine = other;
            }
        };
        if (i > 0) {
            take(stretches[i - 1].tones);
        }
        if (i + 1 < stretches.size()) {
            take(stretches[i + 1].tones);
        }
    }
}

} // namespace

std::vector<Stretch> stretchesOf(const GreyImage &page, const TextLine &line)
{
    const int gap = std::max(3, line.letterHeight * 3 / 10);
    const int most = line.letterHeight * longestStretch;
    std::vector<Stretch> stretches;
    for (const Mark &mark : line.marks) {
        const bool follows = !stretches.empty() &&
                             mark.box.left <= stretches.back().box.right + gap &&
                             mark.box.right - stretches.back().box.left <= most;
        if (!follows) {
            stretches.push_back({mark.box, {}, {}, {}, {}});
        }
        add(mark.box, stretches.back());
    }
    for (Stretch &stretch : stretches) {
        count(page, stretch);
        stretch.tones = tonesOf(stretch);
    }
    // Bold letters of one black may be mistaken for a patch. On a real one there is more of the
    // patch than of them.
    for (Stretch &stretch : stretches) {
        const int plain = percentile(stretch.rim, 0.5);
        const bool isLikeOthers =
            std::any_of(stretches.begin(), stretches.end(), [plain](const Stretch &other) {
                return !other.tones.onPatch &&
                       std::abs(other.tones.background - plain) <= mostAlike;
            });
        if (stretch.tones.onPatch && isLikeOthers &&
            100 * countNear(stretch.inside, stretch.tones.background) <
                leastPatch * all(stretch.inside)) {
            stretch.tones = tonesOn(stretch, plain);
        }
    }
    std::vector<Stretch> joined;
    for (Stretch &stretch : stretches) {
        if (joined.empty() || !haveOneBackground(joined.back().tones, stretch.tones) ||
            !haveOneInk(joined.back().tones, stretch.tones)) {
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
    // Specks between letters, as of a JPEG picture, have no background of their own.
    int strongest = 0;
    for (const Stretch &stretch : joined) {
        strongest = std::max(strongest, stretch.tones.contrast());
    }
    std::erase_if(joined, [&](const Stretch &stretch) {
        return faintest * stretch.tones.contrast() < strongest &&
               (stretch.box.width() < longestSpeck * line.letterHeight ||
                faintestWord * stretch.tones.contrast() < strongest);
    });
    shareInk(joined, shortestWord * line.letterHeight);
    return joined;
}

Tones tonesAt(const std::vector<Stretch> &stretches, int x)
{
    std::size_t i = 0;
    while (i + 1 < stretches.size() &&
           x >= (stretches[i].box.right + stretches[i + 1].box.left) / 2) {
        ++i;
    }
    const Stretch &mine = stretches[i];
    const bool before = x < mine.centre();
    if ((before && i == 0) || (!before && i + 1 == stretches.size())) {
        return mine.tones;
    }
    const Stretch &other = stretches[before ? i - 1 : i + 1];
    if (other.tones.isDarkOnBright() != mine.tones.isDarkOnBright() ||
        std::abs(other.tones.background - mine.tones.background) > mostDrift ||
        !haveOneInk(other.tones, mine.tones)) {
        return mine.tones;
    }
    const double share = (x - mine.centre()) / (other.centre() - mine.centre());
    const auto mix = [share](int a, int b) {
        return int(std::lround(a + (b - a) * share));
    };
    return {mix(mine.tones.background, other.tones.background),
            mix(mine.tones.ink, other.tones.ink), mine.tones.onPatch};
}

} // namespace recognition
