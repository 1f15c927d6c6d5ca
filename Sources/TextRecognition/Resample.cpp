// SPDX-License-Identifier: MIT
#include "Resample.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

struct Taps
{
    int first = 0;
    std::vector<float> weights;
};

float catmullRom(float x)
{
    x = std::fabs(x);
    if (x < 1) {
        return (1.5F * x - 2.5F) * x * x + 1;
    }
    if (x < 2) {
        return ((-0.5F * x + 2.5F) * x - 4) * x + 2;
    }
    return 0;
}

std::vector<Taps> taps(int from, int to)
{
    const float step = float(from) / float(to);
    const float stretch = std::max(step, 1.0F);
    std::vector<Taps> all(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const float centre = (float(i) + 0.5F) * step - 0.5F;
        const int first = std::max(0, int(std::ceil(centre - 2 * stretch)));
        const int last = std::min(from - 1, int(std::floor(centre + 2 * stretch)));
        Taps &tap = all[std::size_t(i)];
        tap.first = std::min(first, from - 1);
        float sum = 0;
        for (int k = tap.first; k <= std::max(last, tap.first); ++k) {
            tap.weights.push_back(catmullRom((float(k) - centre) / stretch));
            sum += tap.weights.back();
        }
        for (float &weight : tap.weights) {
            weight = sum != 0 ? weight / sum : 1.0F / float(tap.weights.size());
        }
    }
    return all;
}

} // namespace

GreyImage resampled(const GreyImage &image, int width, int height)
{
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (image.isEmpty() || (image.width == width && image.height == height)) {
        return image;
    }
    const std::vector<Taps> across = taps(image.width, width);
    const std::vector<Taps> down = taps(image.height, height);

    // Down first: the rows of a line are few, and whole rows add up fast.
    GreyImage result(width, height, 0);
    std::vector<float> sum(static_cast<std::size_t>(image.width));
    for (int y = 0; y < height; ++y) {
        std::fill(sum.begin(), sum.end(), 0.0F);
        const Taps &tap = down[std::size_t(y)];
        for (std::size_t k = 0; k < tap.weights.size(); ++k) {
            const std::uint8_t *line = image.row(tap.first + int(k));
            const float weight = tap.weights[k];
            for (int x = 0; x < image.width; ++x) {
                sum[std::size_t(x)] += weight * float(line[x]);
            }
        }
        std::uint8_t *out = result.row(y);
        for (int x = 0; x < width; ++x) {
            const Taps &columns = across[std::size_t(x)];
            float value = 0.5F;
            for (std::size_t k = 0; k < columns.weights.size(); ++k) {
                value += columns.weights[k] * sum[std::size_t(columns.first) + k];
            }
            out[x] = std::uint8_t(std::clamp(value, 0.0F, 255.0F));
        }
    }
    return result;
}

} // namespace recognition
