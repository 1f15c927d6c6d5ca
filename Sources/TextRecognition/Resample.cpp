// SPDX-License-Identifier: MIT
#include "Resample.h"

#include "Effort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace recognition {

namespace {

/// For each pixel of a row or column: which pixels it is made of, and how much of each.
struct Taps
{
    std::vector<int> firsts;
    /// `most` for each, zeros at the end.
    std::vector<float> weights;
    int most = 0;

    const float *at(int i) const { return weights.data() + std::ptrdiff_t(i) * most; }
};

Taps taps(int from, int to)
{
    const float step = float(from) / float(to);
    const float stretch = std::max(step, 1.0F);
    Taps all;
    all.most = std::min(int(std::floor(4 * stretch)) + 1, from);
    all.weights.assign(std::size_t(all.most) * std::size_t(to), 0);
    all.firsts.reserve(std::size_t(to));
    for (int i = 0; i < to; ++i) {
        const float centre = (float(i) + 0.5F) * step - 0.5F;
        const int nearest = std::max(0, int(std::ceil(centre - 2 * stretch)));
        const int last = std::min(from - 1, int(std::floor(centre + 2 * stretch)));
        const int first = std::min(nearest, from - 1);
        const int count = std::min(std::max(last, first) - first + 1, all.most);
        float *weights = all.weights.data() + std::ptrdiff_t(i) * all.most;
        float sum = 0;
        for (int k = 0; k < count; ++k) {
            weights[k] = catmullRom((float(first + k) - centre) / stretch);
            sum += weights[k];
        }
        for (int k = 0; k < count; ++k) {
            weights[k] = sum != 0 ? weights[k] / sum : 1.0F / float(count);
        }
        // All of them are within, so that zeros may be added without a question.
        const int shift = first - std::min(first, from - all.most);
        std::rotate(weights, weights + all.most - shift, weights + all.most);
        all.firsts.push_back(first - shift);
    }
    return all;
}

} // namespace

float catmullRom(float distance)
{
    const float x = std::fabs(distance);
    if (x < 1) {
        return (1.5F * x - 2.5F) * x * x + 1;
    }
    if (x < 2) {
        return ((-0.5F * x + 2.5F) * x - 4) * x + 2;
    }
    return 0;
}

GreyImage resampled(const GreyImage &image, int width, int height)
{
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (image.isEmpty() || (image.width == width && image.height == height)) {
        return image;
    }
    const Taps across = taps(image.width, width);
    const Taps down = taps(image.height, height);

    // Down first: the rows of a line are few, and whole rows add up fast.
    GreyImage result(width, height, 0);
    std::vector<float> sum(static_cast<std::size_t>(image.width));
    for (int y = 0; y < height; ++y) {
        checkAt(y);
        std::fill(sum.begin(), sum.end(), 0.0F);
        for (int k = 0; k < down.most; ++k) {
            const std::uint8_t *line = image.row(down.firsts[std::size_t(y)] + k);
            const float weight = down.at(y)[k];
            if (weight == 0) {
                continue;
            }
            for (int x = 0; x < image.width; ++x) {
                sum[std::size_t(x)] += weight * float(line[x]);
            }
        }
        std::uint8_t *out = result.row(y);
        for (int x = 0; x < width; ++x) {
            const float *weights = across.at(x);
            const float *values = sum.data() + across.firsts[std::size_t(x)];
            float value = 0.5F;
            for (int k = 0; k < across.most; ++k) {
                value += weights[k] * values[k];
            }
            out[x] = std::uint8_t(std::clamp(value, 0.0F, 255.0F));
        }
    }
    return result;
}

} // namespace recognition
