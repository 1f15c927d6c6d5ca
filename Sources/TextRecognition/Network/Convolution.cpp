// SPDX-License-Identifier: MIT
#include "Convolution.h"

#include "Effort.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace recognition {

namespace {

/// Columns whose sums are kept at once: few enough to stay in the processor's nearest cache.
constexpr int columnsAtOnce = 96;

/// A vector of sums as GCC and Clang know it on any processor.
using Sums = std::int32_t __attribute__((vector_size(tileOutputs * sizeof(std::int32_t))));

/// The largest sum of each output of a pool; vectors of sums stand `size` apart, rows `rowSize`.
void keepLargest(const std::int32_t *sums, int size, int rowSize, int columns, int rows,
                 std::int32_t *largest)
{
    for (int i = 0; i < size; i += tileOutputs) {
        Sums kept;
        std::memcpy(&kept, sums + i, sizeof kept);
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < columns; ++x) {
                Sums other;
                std::memcpy(&other,
                            sums + std::ptrdiff_t(y) * rowSize + std::ptrdiff_t(x) * size + i,
                            sizeof other);
                kept = other > kept ? other : kept;
            }
        }
        std::memcpy(largest + i, &kept, sizeof kept);
    }
}

/// For each column from `across` before the line's first to `across` after its last: its values
/// `down` above and below row `y`, zeros outside.
std::vector<std::int8_t> columnsAround(const Activations &line, int y, int across, int down)
{
    const int height = 2 * down + 1;
    // Products reach beyond the last window to whole tiles.
    std::vector<std::int8_t> columns(
        std::size_t(line.width + 2 * across) * std::size_t(height) + tileInputs, 0);
    for (int k = 0; k < height; ++k) {
        const int from = y - down + k;
        if (from < 0 || from >= line.height) {
            continue;
        }
        std::int8_t *to = columns.data() + std::ptrdiff_t(across) * height + k;
        for (int x = 0; x < line.width; ++x, to += height) {
            *to = *line.at(x, from);
        }
    }
    return columns;
}

} // namespace

bool Convolution::fits(const FullyConnected &weights)
{
    const std::vector<float> &scales = weights.scales();
    return std::all_of(scales.begin(), scales.end(), [](float scale) { return scale >= 0; });
}

Convolution::Convolution(std::unique_ptr<Window> window, std::unique_ptr<FullyConnected> weights,
                         std::unique_ptr<MaxPool> pool)
    : m_window(std::move(window))
    , m_weights(std::move(weights))
    , m_pool(std::move(pool))
{
}

Lines Convolution::forward(const Lines &inputs) const
{
    if (!inputs.empty() && inputs.front().depth != 1) {
        return m_pool->forward(m_weights->forward(m_window->forward(inputs)));
    }
    return eachOf(inputs, [this](const Activations &input) { return convolved(input); });
}

Activations Convolution::convolved(const Activations &input) const
{
    Activations output(std::max(input.width / m_pool->across(), 1),
                       std::max(input.height / m_pool->down(), 1), m_weights->matrix().outputs());
    for (int y = 0; y < output.height; ++y) {
        poolRow(input, y, output);
    }
    return output;
}

void Convolution::poolRow(const Activations &input, int row, Activations &output) const
{
    checkpoint();
    const ByteMatrix &matrix = m_weights->matrix();
    const int across = m_pool->across();
    const int first = row * m_pool->down();
    const int rows = std::min(m_pool->down(), input.height - first);
    const int windowHeight = 2 * m_window->down() + 1;
    std::vector<std::vector<std::int8_t>> columns;
    columns.reserve(std::size_t(rows));
    for (int y = first; y < first + rows; ++y) {
        columns.push_back(columnsAround(input, y, m_window->across(), m_window->down()));
    }
    const int poolsAtOnce = std::max(columnsAtOnce / across, 1);
    const int size = matrix.sumsSize();
    const int rowSize = poolsAtOnce * across * size;
    std::vector<std::int32_t> sums(std::size_t(rowSize) * std::size_t(rows));
    std::vector<std::int32_t> largest(static_cast<std::size_t>(size));
    for (int pool = 0; pool < output.width; pool += poolsAtOnce) {
        const int left = pool * across;
        const int count = std::min(poolsAtOnce * across, input.width - left);
        for (int y = 0; y < rows; ++y) {
            // A window's columns stand beside each other, and windows overlap.
            matrix.multiply(columns[std::size_t(y)].data() + std::ptrdiff_t(left) * windowHeight,
                            windowHeight, count, sums.data() + std::ptrdiff_t(y) * rowSize);
        }
        for (int i = 0; i < std::min(poolsAtOnce, output.width - pool); ++i) {
            keepLargest(sums.data() + std::ptrdiff_t(i) * across * size, size, rowSize,
                        std::min(across, input.width - left - i * across), rows, largest.data());
            m_weights->finish(largest.data(), output.at(pool + i, row));
        }
    }
}

Form Convolution::output(Form input) const
{
    for (const Layer *layer :
         {static_cast<const Layer *>(m_window.get()), static_cast<const Layer *>(m_weights.get()),
          static_cast<const Layer *>(m_pool.get())}) {
        if (input.depth > 0) {
            input = layer->output(input);
        }
    }
    return input;
}

namespace {

template <typename To>
To *as(const std::unique_ptr<Layer> &layer)
{
    return dynamic_cast<To *>(layer.get());
}

/// Takes the layer out of its place; it must be a `To`.
template <typename To>
std::unique_ptr<To> taken(std::unique_ptr<Layer> &layer)
{
    return std::unique_ptr<To>(static_cast<To *>(layer.release()));
}

Layers flattened(Layers layers)
{
    Layers flat;
    for (std::unique_ptr<Layer> &layer : layers) {
        if (auto *series = as<Series>(layer)) {
            Layers parts = series->takeLayers();
            flat.insert(flat.end(), std::make_move_iterator(parts.begin()),
                        std::make_move_iterator(parts.end()));
        } else {
            flat.push_back(std::move(layer));
        }
    }
    return flat;
}

} // namespace

Layers withConvolutions(Layers layers)
{
    Layers flat = flattened(std::move(layers));
    Layers result;
    for (std::size_t i = 0; i < flat.size(); ++i) {
        const bool isConvolution = i + 2 < flat.size() && as<Window>(flat[i]) &&
                                   as<FullyConnected>(flat[i + 1]) && as<MaxPool>(flat[i + 2]) &&
                                   Convolution::fits(*as<FullyConnected>(flat[i + 1]));
        if (isConvolution) {
            result.push_back(std::make_unique<Convolution>(taken<Window>(flat[i]),
                                                           taken<FullyConnected>(flat[i + 1]),
                                                           taken<MaxPool>(flat[i + 2])));
            i += 2;
        } else {
            result.push_back(std::move(flat[i]));
        }
    }
    return result;
}

} // namespace recognition
