// SPDX-License-Identifier: MIT
#include "Layers.h"

#include <algorithm>
#include <cstring>

namespace recognition {

Series::Series(Layers layers)
    : m_layers(std::move(layers))
{
}

Activations Series::forward(const Activations &input) const
{
    Activations values = m_layers.front()->forward(input);
    for (std::size_t i = 1; i < m_layers.size(); ++i) {
        values = m_layers[i]->forward(values);
    }
    return values;
}

int Series::outputDepth(int depth) const
{
    for (const auto &layer : m_layers) {
        depth = depth > 0 ? layer->outputDepth(depth) : 0;
    }
    return depth;
}

int Series::widthFactor() const
{
    int factor = 1;
    for (const auto &layer : m_layers) {
        factor *= layer->widthFactor();
    }
    return factor;
}

Parallel::Parallel(Layers layers)
    : m_layers(std::move(layers))
{
}

Activations Parallel::forward(const Activations &input) const
{
    std::vector<Activations> parts;
    int depth = 0;
    for (const auto &layer : m_layers) {
        parts.push_back(layer->forward(input));
        depth += parts.back().depth;
    }
    Activations output(parts.front().width, parts.front().height, depth);
    int offset = 0;
    for (const Activations &part : parts) {
        for (int y = 0; y < output.height; ++y) {
            for (int x = 0; x < output.width; ++x) {
                std::memcpy(output.at(x, y) + offset, part.at(x, y), std::size_t(part.depth));
            }
        }
        offset += part.depth;
    }
    return output;
}

int Parallel::outputDepth(int depth) const
{
    int sum = 0;
    for (const auto &layer : m_layers) {
        const int one = layer->outputDepth(depth);
        if (one == 0 || layer->widthFactor() != widthFactor()) {
            return 0;
        }
        sum += one;
    }
    return sum;
}

int Parallel::widthFactor() const
{
    return m_layers.front()->widthFactor();
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

Activations Turned::forward(const Activations &input) const
{
    return turned(m_layer->forward(turned(input, m_turn)), m_turn);
}

int Turned::outputDepth(int depth) const
{
    return m_layer->widthFactor() == 1 ? m_layer->outputDepth(depth) : 0;
}

Window::Window(int across, int down)
    : m_across(across)
    , m_down(down)
{
}

Activations Window::forward(const Activations &input) const
{
    Activations output(input.width, input.height, outputDepth(input.depth));
    for (int y = 0; y < input.height; ++y) {
        for (int x = 0; x < input.width; ++x) {
            std::int8_t *to = output.at(x, y);
            for (int atX = x - m_across; atX <= x + m_across; ++atX) {
                for (int atY = y - m_down; atY <= y + m_down; ++atY, to += input.depth) {
                    // What is outside stays zero, the middle between ink and paper.
                    if (atX >= 0 && atX < input.width && atY >= 0 && atY < input.height) {
                        std::memcpy(to, input.at(atX, atY), std::size_t(input.depth));
                    }
                }
            }
        }
    }
    return output;
}

int Window::outputDepth(int depth) const
{
    return depth * (2 * m_across + 1) * (2 * m_down + 1);
}

MaxPool::MaxPool(int across, int down)
    : m_across(across)
    , m_down(down)
{
}

Activations MaxPool::forward(const Activations &input) const
{
    Activations output(std::max(input.width / m_across, 1), std::max(input.height / m_down, 1),
                       input.depth);
    for (int y = 0; y < output.height; ++y) {
        for (int x = 0; x < output.width; ++x) {
            std::int8_t *to = output.at(x, y);
            std::memcpy(to, input.at(x * m_across, y * m_down), std::size_t(input.depth));
            const int right = std::min((x + 1) * m_across, input.width);
            const int bottom = std::min((y + 1) * m_down, input.height);
            for (int atY = y * m_down; atY < bottom; ++atY) {
                for (int atX = x * m_across; atX < right; ++atX) {
                    const std::int8_t *from = input.at(atX, atY);
                    for (int i = 0; i < input.depth; ++i) {
                        to[i] = std::max(to[i], from[i]);
                    }
                }
            }
        }
    }
    return output;
}

FullyConnected::FullyConnected(const Weights &weights, Nonlinearity nonlinearity)
    : m_weights(weights, 0, weights.inputs, true)
    , m_scales(weights.padded().scales)
    , m_nonlinearity(nonlinearity)
{
}

Activations FullyConnected::forward(const Activations &input) const
{
    Activations output(input.width, input.height, m_weights.outputs());
    const int sumsSize = m_weights.sumsSize();
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * std::size_t(input.width));
    for (int y = 0; y < input.height; ++y) {
        m_weights.multiply(input.at(0, y), input.stride(), input.width, sums.data());
        for (int x = 0; x < input.width; ++x) {
            applyNonlinearity(m_nonlinearity, sums.data() + std::ptrdiff_t(x) * sumsSize,
                              m_scales.data(), m_weights.outputs(), output.at(x, y));
        }
    }
    return output;
}

int FullyConnected::outputDepth(int depth) const
{
    return depth == m_weights.inputs() ? m_weights.outputs() : 0;
}

} // namespace recognition
