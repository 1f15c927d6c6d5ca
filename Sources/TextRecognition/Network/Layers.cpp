// SPDX-License-Identifier: MIT
#include "Layers.h"

#include "Effort.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace recognition {

namespace {

/// More values per point, and more columns that become one, are a damaged file: known models stay
/// far below.
constexpr int deepest = 2048;
constexpr int mostPooled = 255;

Form withDepth(Form form, std::int64_t depth)
{
    form.depth = depth <= deepest ? int(depth) : 0;
    return form;
}

/// A vector of bytes as GCC and Clang know it on any processor.
using Bytes = std::int8_t __attribute__((vector_size(numbersAtOnce)));

Bytes bytesAt(const std::int8_t *from)
{
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

} // namespace

Series::Series(Layers layers)
    : m_layers(std::move(layers))
{
}

Lines Series::forward(const Lines &inputs) const
{
    Lines values = m_layers.front()->forward(inputs);
    for (std::size_t i = 1; i < m_layers.size(); ++i) {
        checkpoint();
        values = m_layers[i]->forward(values);
    }
    return values;
}

Form Series::output(Form input) const
{
    for (const auto &layer : m_layers) {
        if (input.depth > 0) {
            input = layer->output(input);
        }
    }
    return input;
}

Parallel::Parallel(Layers layers)
    : m_layers(std::move(layers))
{
}

namespace {

/// The values of all `parts` in each point.
Activations sideBySide(const std::vector<const Activations *> &parts)
{
    int depth = 0;
    for (const Activations *part : parts) {
        depth += part->depth;
    }
    Activations output(parts.front()->width, parts.front()->height, depth);
    int offset = 0;
    for (const Activations *part : parts) {
        for (int y = 0; y < output.height; ++y) {
            for (int x = 0; x < output.width; ++x) {
                std::memcpy(output.at(x, y) + offset, part->at(x, y), std::size_t(part->depth));
            }
        }
        offset += part->depth;
    }
    return output;
}

} // namespace

Lines Parallel::forward(const Lines &inputs) const
{
    std::vector<Lines> parts;
    parts.reserve(m_layers.size());
    for (const auto &layer : m_layers) {
        checkpoint();
        parts.push_back(layer->forward(inputs));
    }
    Lines outputs;
    for (std::size_t line = 0; line < inputs.size(); ++line) {
        std::vector<const Activations *> ofLine;
        ofLine.reserve(parts.size());
        for (const Lines &part : parts) {
            ofLine.push_back(&part[line]);
        }
        outputs.push_back(sideBySide(ofLine));
    }
    return outputs;
}

Form Parallel::output(Form input) const
{
    const Form first = m_layers.front()->output(input);
    std::int64_t depth = 0;
    for (const auto &layer : m_layers) {
        const Form form = layer->output(input);
        if (form.depth == 0 || form.columns != first.columns || form.rows != first.rows) {
            return withDepth(first, 0);
        }
        depth += form.depth;
    }
    return withDepth(first, depth);
}

namespace {

Activations turned(const Activations &input, Turned::Turn turn)
{
    const bool isTransposed = turn == Turned::Turn::Transposed;
    Activations output(isTransposed ? input.height : input.width,
                       isTransposed ? input.width : input.height, input.depth);
    for (int y = 0; y < input.height; ++y) {
        for (int x = 0; x < input.width; ++x) {
            std::int8_t *to = nullptr;
            switch (turn) {
            case Turned::Turn::FromRight:
                to = output.at(input.width - 1 - x, y);
                break;
            case Turned::Turn::FromBelow:
                to = output.at(x, input.height - 1 - y);
                break;
            case Turned::Turn::Transposed:
                to = output.at(y, x);
                break;
            }
            std::memcpy(to, input.at(x, y), std::size_t(input.depth));
        }
    }
    return output;
}

} // namespace

Turned::Turned(Turn turn, std::unique_ptr<Layer> layer)
    : m_turn(turn)
    , m_layer(std::move(layer))
{
}

Lines Turned::forward(const Lines &inputs) const
{
    const auto turn = [this](const Activations &input) {
        return turned(input, m_turn);
    };
    return eachOf(m_layer->forward(eachOf(inputs, turn)), turn);
}

Form Turned::output(Form input) const
{
    if (m_turn != Turn::Transposed) {
        return m_layer->output(input);
    }
    std::swap(input.columns, input.rows);
    Form form = m_layer->output(input);
    std::swap(form.columns, form.rows);
    return form;
}

Window::Window(int across, int down)
    : m_across(across)
    , m_down(down)
{
}

namespace {

/// Copies `depth` values of each of `count` points.
void copyPoints(const std::int8_t *from, int fromStride, std::int8_t *to, int toStride, int depth,
                int count)
{
    if (depth == 1) {
        for (int i = 0; i < count; ++i) {
            to[std::ptrdiff_t(i) * toStride] = from[std::ptrdiff_t(i) * fromStride];
        }
        return;
    }
    for (int i = 0; i < count; ++i, from += fromStride, to += toStride) {
        std::memcpy(to, from, std::size_t(depth));
    }
}

} // namespace

Lines Window::forward(const Lines &inputs) const
{
    return eachOf(inputs, [this](const Activations &input) { return around(input); });
}

Activations Window::around(const Activations &input) const
{
    Activations output(input.width, input.height, input.depth * points());
    for (int y = 0; y < input.height; ++y) {
        int offset = 0;
        for (int x = -m_across; x <= m_across; ++x) {
            // What is outside stays zero, the middle between ink and paper.
            const int left = std::max(0, -x);
            const int count = std::min(input.width, input.width - x) - left;
            for (int atY = y - m_down; atY <= y + m_down; ++atY, offset += input.depth) {
                if (atY >= 0 && atY < input.height && count > 0) {
                    copyPoints(input.at(left + x, atY), input.stride(), output.at(left, y) + offset,
                               output.stride(), input.depth, count);
                }
            }
        }
    }
    return output;
}

Form Window::output(Form input) const
{
    return withDepth(input, std::int64_t(input.depth) * points());
}

MaxPool::MaxPool(int across, int down)
    : m_across(across)
    , m_down(down)
{
}

Lines MaxPool::forward(const Lines &inputs) const
{
    return eachOf(inputs, [this](const Activations &input) { return pooled(input); });
}

Activations MaxPool::pooled(const Activations &input) const
{
    Activations output(std::max(input.width / m_across, 1), std::max(input.height / m_down, 1),
                       input.depth);
    for (int y = 0; y < output.height; ++y) {
        const int bottom = std::min((y + 1) * m_down, input.height);
        for (int x = 0; x < output.width; ++x) {
            const int right = std::min((x + 1) * m_across, input.width);
            for (int i = 0; i < input.stride(); i += numbersAtOnce) {
                Bytes largest = bytesAt(input.at(x * m_across, y * m_down) + i);
                for (int atY = y * m_down; atY < bottom; ++atY) {
                    for (int atX = x * m_across; atX < right; ++atX) {
                        const Bytes other = bytesAt(input.at(atX, atY) + i);
                        largest = other > largest ? other : largest;
                    }
                }
                std::memcpy(output.at(x, y) + i, &largest, sizeof largest);
            }
        }
    }
    return output;
}

Form MaxPool::output(Form input) const
{
    input.columns *= m_across;
    input.rows *= m_down;
    const bool fits = input.columns <= mostPooled && input.rows <= mostPooled;
    return fits ? input : withDepth(input, 0);
}

FullyConnected::FullyConnected(const Weights &weights, Nonlinearity nonlinearity)
    : m_weights(weights, 0, weights.inputs, true)
    , m_scales(weights.padded().scales)
    , m_nonlinearity(nonlinearity)
{
}

Lines FullyConnected::forward(const Lines &inputs) const
{
    return eachOf(inputs, [this](const Activations &input) { return weighed(input); });
}

Activations FullyConnected::weighed(const Activations &input) const
{
    Activations output(input.width, input.height, m_weights.outputs());
    const int sumsSize = m_weights.sumsSize();
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * std::size_t(input.width));
    for (int y = 0; y < input.height; ++y) {
        checkpoint();
        m_weights.multiply(input.at(0, y), input.stride(), input.width, sums.data());
        for (int x = 0; x < input.width; ++x) {
            finish(sums.data() + std::ptrdiff_t(x) * sumsSize, output.at(x, y));
        }
    }
    return output;
}

void FullyConnected::finish(const std::int32_t *sums, std::int8_t *outputs) const
{
    applyNonlinearity(m_nonlinearity, sums, m_scales.data(), m_weights.outputs(), outputs);
}

Form FullyConnected::output(Form input) const
{
    return withDepth(input, input.depth == m_weights.inputs() ? m_weights.outputs() : 0);
}

} // namespace recognition
