// SPDX-License-Identifier: MIT
#include "Skew.h"

#include "Effort.h"
#include "Resample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace recognition {

namespace {

/// From slope to slope that is tried the end of a line of 1,000 pixels moves by two.
constexpr double step = 0.002;

/// What is steeper was turned on purpose: 3 degrees and what their measuring may miss.
constexpr int mostSteps = 30;
constexpr double steepest = mostSteps * step;

/// A line of 300 pixels that falls by less than one is read as if it lay level.
constexpr double gentlest = 0.0035;

/// By how many times the edges have to be sharper than those of the level page. Turned by a degree
/// and more, that is 1.6 to 18 times on pictures of text; on 388 level ones 1.2 at most, and
/// on photographs 1.4.
constexpr double leastGain = 1.5;

/// The upper and lower edges of everything on a page, summed up along lines of any slope. Where
/// the lines of text have that slope, the sums jump from line to line.
class EdgeSums
{
public:
    explicit EdgeSums(const GreyImage &page)
        // On a wide page a line's end moves by more pixels from slope to slope.
        : m_rowHeight(page.width / widthOfOneStep + 1)
        , m_rows(page.height / m_rowHeight + 1)
        , m_strips(page.width / stripWidth + 1)
        , m_sums(std::size_t(m_rows) * std::size_t(m_strips))
    {
        for (int y = 0; y + 1 < page.height; ++y) {
            checkAt(y);
            const std::uint8_t *above = page.row(y);
            const std::uint8_t *below = page.row(y + 1);
            for (int x = 0; x < page.width; ++x) {
                const int edge = std::abs(below[x] - above[x]);
                if (edge > faintest) {
                    sum(x / stripWidth, y / m_rowHeight) += std::min(edge, strongest);
                }
            }
        }
    }

    /// How much the sums along lines of this slope differ from one line to the next.
    double sharpness(double slope) const
    {
        checkpoint();
        const double fall = slope * stripWidth / m_rowHeight;
        const int reach = int(std::ceil(std::fabs(fall) * m_strips));
        std::vector<int> lines(std::size_t(m_rows + 2 * reach), 0);
        for (int strip = 0; strip < m_strips; ++strip) {
            const int start = reach - int(std::lround(fall * strip));
            for (int row = 0; row < m_rows; ++row) {
                lines[std::size_t(start + row)] += sum(strip, row);
            }
        }
        double result = 0;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const double jump = lines[i] - lines[i - 1];
            result += jump * jump;
        }
        return result;
    }

    /// The sharpest of the slopes so many steps around `middle`.
    double sharpest(double middle, int steps, double apart) const
    {
        double best = middle;
        double most = 0;
        for (int i = -steps; i <= steps; ++i) {
            const double here = sharpness(middle + i * apart);
            if (here > most) {
                most = here;
                best = middle + i * apart;
            }
        }
        return best;
    }

private:
    /// Grain and the ringing of a JPEG are fainter.
    static constexpr int faintest = 10;
    /// A frame in black on white tells no more than letters in grey.
    static constexpr int strongest = 64;
    /// So narrow that no line falls by more than a pixel within one.
    static constexpr int stripWidth = 16;
    static constexpr int widthOfOneStep = 2048;

    int &sum(int strip, int row)
    {
        return m_sums[std::size_t(strip) * std::size_t(m_rows) + std::size_t(row)];
    }
    int sum(int strip, int row) const
    {
        return m_sums[std::size_t(strip) * std::size_t(m_rows) + std::size_t(row)];
    }

    int m_rowHeight;
    int m_rows;
    int m_strips;
    std::vector<int> m_sums;
};

/// What stands around a page: for each side the median of its edge.
class Rim
{
public:
    explicit Rim(const GreyImage &page)
        : m_width(page.width)
        , m_height(page.height)
        , m_top(median({page.row(0), page.row(0) + page.width}))
        , m_bottom(median({page.row(page.height - 1), page.row(page.height - 1) + page.width}))
        , m_left(median(column(page, 0)))
        , m_right(median(column(page, page.width - 1)))
    {
    }

    bool holds(double x, double y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }

    std::uint8_t beyond(double x, double y) const
    {
        if (x < 0 || x >= m_width) {
            return x < 0 ? m_left : m_right;
        }
        return y < 0 ? m_top : m_bottom;
    }

private:
    static std::vector<std::uint8_t> column(const GreyImage &page, int x)
    {
        std::vector<std::uint8_t> values;
        values.reserve(std::size_t(page.height));
        for (int y = 0; y < page.height; ++y) {
            values.push_back(page.at(x, y));
        }
        return values;
    }

    static std::uint8_t median(std::vector<std::uint8_t> values)
    {
        const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    int m_width;
    int m_height;
    std::uint8_t m_top;
    std::uint8_t m_bottom;
    std::uint8_t m_left;
    std::uint8_t m_right;
};

/// What lies between pixels, by the kernel of `resampled`, to a 32nd of a pixel.
class Phases
{
public:
    Phases()
    {
        for (int phase = 0; phase <= count; ++phase) {
            const float part = float(phase) / count;
            for (int tap = 0; tap < 4; ++tap) {
                m_weights[std::size_t(phase)][std::size_t(tap)] = catmullRom(part + 1 - float(tap));
            }
        }
    }

    /// At the middle of a pixel its place is whole.
    std::uint8_t pixel(const GreyImage &image, double x, double y) const
    {
        const int left = int(std::floor(x));
        const int top = int(std::floor(y));
        const auto &across = m_weights[std::size_t((x - left) * count + 0.5)];
        const auto &down = m_weights[std::size_t((y - top) * count + 0.5)];
        float value = 0.5F;
        for (int v = 0; v < 4; ++v) {
            const std::uint8_t *row = image.row(std::clamp(top + v - 1, 0, image.height - 1));
            float sum = 0;
            for (int h = 0; h < 4; ++h) {
                sum += across[std::size_t(h)] * row[std::clamp(left + h - 1, 0, image.width - 1)];
            }
            value += down[std::size_t(v)] * sum;
        }
        return std::uint8_t(std::clamp(value, 0.0F, 255.0F));
    }

private:
    static constexpr int count = 32;
    std::array<std::array<float, 4>, count + 1> m_weights;
};

} // namespace

double slopeOf(const GreyImage &page)
{
    if (page.isEmpty()) {
        return 0;
    }
    const EdgeSums sums(page);
    // One step further than what counts: the end of what is tried may be the slope of a peak
    // beyond.
    const double rough = sums.sharpest(0, mostSteps + 1, step);
    if (std::fabs(rough) > steepest || sums.sharpness(rough) < leastGain * sums.sharpness(0)) {
        return 0;
    }
    constexpr int parts = 8;
    const double slope = sums.sharpest(rough, parts, step / parts);
    return std::fabs(slope) < gentlest || std::fabs(slope) > steepest ? 0 : slope;
}

Levelling::Levelling(int width, int height, double slope)
    : m_width(width)
    , m_height(height)
    , m_cosine(1 / std::hypot(1, slope))
    , m_sine(slope * m_cosine)
    , m_levelWidth(int(std::ceil(width * m_cosine + height * std::fabs(m_sine))))
    , m_levelHeight(int(std::ceil(width * std::fabs(m_sine) + height * m_cosine)))
{
}

Levelling::Point Levelling::onPage(Point level) const
{
    const double along = level.x - m_levelWidth / 2.0;
    const double down = level.y - m_levelHeight / 2.0;
    return {m_width / 2.0 + along * m_cosine - down * m_sine,
            m_height / 2.0 + along * m_sine + down * m_cosine};
}

Box Levelling::onPage(const Box &level) const
{
    const std::array corners{onPage(Point{double(level.left), double(level.top)}),
                             onPage(Point{double(level.right), double(level.top)}),
                             onPage(Point{double(level.left), double(level.bottom)}),
                             onPage(Point{double(level.right), double(level.bottom)})};
    const auto [left, right] = std::ranges::minmax(corners, {}, &Point::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &Point::y);
    return {int(std::floor(left.x)), int(std::floor(top.y)), int(std::ceil(right.x)),
            int(std::ceil(bottom.y))};
}

GreyImage Levelling::apply(const GreyImage &page) const
{
    const Rim rim(page);
    const Phases phases;
    GreyImage level(m_levelWidth, m_levelHeight, 0);
    for (int y = 0; y < m_levelHeight; ++y) {
        checkAt(y);
        // Pixels stand for their middles.
        Point at = onPage(Point{0.5, y + 0.5});
        for (int x = 0; x < m_levelWidth; ++x, at.x += m_cosine, at.y += m_sine) {
            level.row(y)[x] = rim.holds(at.x, at.y) ? phases.pixel(page, at.x - 0.5, at.y - 0.5)
                                                    : rim.beyond(at.x, at.y);
        }
    }
    return level;
}

} // namespace recognition
