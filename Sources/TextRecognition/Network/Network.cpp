// SPDX-License-Identifier: MIT
#include "Network.h"

#include "Effort.h"
#include "NetworkReader.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace recognition {

namespace {

std::uint8_t share(std::vector<std::uint8_t> &values, double part, std::uint8_t otherwise)
{
    if (values.empty()) {
        return otherwise;
    }
    const auto at = values.begin() + std::ptrdiff_t(double(values.size() - 1) * part);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

/// A line's ink becomes -1 and its paper 1, told as in training: by the quarter of the darkest
/// valleys and of the brightest peaks along the middle row.
Activations normalized(const GreyImage &line)
{
    std::vector<std::uint8_t> valleys;
    std::vector<std::uint8_t> peaks;
    const std::uint8_t *middle = line.row(line.height / 2);
    for (int x = 1; x + 1 < line.width; ++x) {
        const int before = middle[x - 1];
        const int here = middle[x];
        const int after = middle[x + 1];
        if ((here < before && here <= after) || (here <= before && here < after)) {
            valleys.push_back(middle[x]);
        }
        if ((here > before && here >= after) || (here >= before && here > after)) {
            peaks.push_back(middle[x]);
        }
    }
    const float black = share(valleys, 0.25, 0);
    const float white = share(peaks, 0.75, 255);
    const float contrast = white > black ? (white - black) / 2 : 1;

    std::array<std::int8_t, 256> values{};
    for (int grey = 0; grey < 256; ++grey) {
        const float value = (float(grey) - black) / contrast - 1;
        values[std::size_t(grey)] = std::int8_t(std::clamp(std::lround(value * 128), -127L, 127L));
    }
    Activations result(line.width, line.height, 1);
    for (int y = 0; y < line.height; ++y) {
        const std::uint8_t *row = line.row(y);
        for (int x = 0; x < line.width; ++x) {
            *result.at(x, y) = values[row[x]];
        }
    }
    return result;
}

} // namespace

Network::Network(NetworkParts parts)
    : m_lineHeight(parts.lineHeight)
    , m_columnWidth(parts.columnWidth)
    , m_body(std::move(parts.body))
    , m_output(parts.output, 0, parts.output.inputs, true)
    , m_outputScales(parts.output.padded().scales)
{
}

std::optional<Network> Network::read(ByteReader &reader)
{
    std::optional<NetworkParts> parts = readNetwork(reader);
    return parts ? std::optional(Network(std::move(*parts))) : std::nullopt;
}

Lines Network::read(const std::vector<GreyImage> &lines) const
{
    Lines inputs;
    inputs.reserve(lines.size());
    for (const GreyImage &line : lines) {
        inputs.push_back(normalized(line));
    }
    return m_body->forward(inputs);
}

CodeShares Network::shares(const Activations &line) const
{
    CodeShares result;
    result.columns = line.width;
    result.codes = m_output.outputs();
    result.shares.resize(std::size_t(result.columns) * std::size_t(result.stride()));
    constexpr int columnsAtOnce = 16;
    const int sumsSize = m_output.sumsSize();
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * columnsAtOnce);
    for (int x = 0; x < result.columns; x += columnsAtOnce) {
        checkpoint();
        const int columns = std::min(columnsAtOnce, result.columns - x);
        m_output.multiply(line.at(x, 0), line.stride(), columns, sums.data());
        for (int i = 0; i < columns; ++i) {
            shareOut(sums.data() + std::ptrdiff_t(i) * sumsSize, m_outputScales.data(),
                     result.codes, result.at(x + i));
        }
    }
    return result;
}

} // namespace recognition
