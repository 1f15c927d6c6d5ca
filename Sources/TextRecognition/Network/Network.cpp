// SPDX-License-Identifier: MIT
#include "Network.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace recognition {

namespace {

/// Says that layers have learning rates of their own, which follow them.
constexpr std::int32_t hasRates = 64;

/// Networks nested deeper, or of more layers side by side, are a damaged file.
constexpr int deepest = 8;
constexpr std::uint32_t mostParts = 64;

struct LayerReader
{
    ByteReader &reader;
    int lineHeight = 0;
    /// The last layer, which gives shares instead of bytes.
    Weights output;

    std::unique_ptr<Layer> read(int depth);

private:
    std::unique_ptr<Layer> readPart(std::string_view type, int inputs, std::int32_t flags,
                                    int depth);
    Layers readParts(std::int32_t flags, int depth);
    std::unique_ptr<Layer> readMemory(int inputs, bool isSummary);
    void readInput();
};

std::unique_ptr<Layer> failed(ByteReader &reader)
{
    reader.fail();
    return nullptr;
}

Layers LayerReader::readParts(std::int32_t flags, int depth)
{
    Layers layers;
    const auto count = reader.value<std::uint32_t>();
    if (count == 0 || count > mostParts) {
        reader.fail();
    }
    for (std::uint32_t i = 0; i < count && !reader.failed(); ++i) {
        // The input and the last layer are no steps of their own here.
        if (std::unique_ptr<Layer> layer = read(depth + 1)) {
            layers.push_back(std::move(layer));
        }
    }
    if ((flags & hasRates) != 0) {
        reader.take(std::size_t(reader.value<std::uint32_t>()) * sizeof(float));
    }
    if (layers.empty()) {
        reader.fail();
    }
    return layers;
}

std::unique_ptr<Layer> LayerReader::readMemory(int inputs, bool isSummary)
{
    const auto columns = reader.value<std::int32_t>();
    std::vector<Weights> gates;
    for (int i = 0; i < 4; ++i) {
        gates.push_back(Weights::read(reader));
        if (reader.failed() || inputs < 1 || gates.back().inputs != columns ||
            gates.back().outputs != gates.front().outputs ||
            columns != inputs + gates.front().outputs) {
            return failed(reader);
        }
    }
    return std::make_unique<Memory>(gates, inputs, isSummary);
}

void LayerReader::readInput()
{
    std::array<std::int32_t, 5> shape{};
    for (std::int32_t &size : shape) {
        size = reader.value<std::int32_t>();
    }
    const auto [batch, height, width, depth, loss] = shape;
    // Of one grey value per pixel and any width.
    if (height < 8 || height > 255 || width != 0 || depth != 1) {
        reader.fail();
    }
    lineHeight = height;
}

std::unique_ptr<Layer> LayerReader::readPart(std::string_view type, int inputs, std::int32_t flags,
                                             int depth)
{
    using namespace std::string_view_literals;
    if (type == "Series"sv) {
        return std::make_unique<Series>(readParts(flags, depth));
    }
    if (type == "Parallel"sv || type == "Replicated"sv || type == "ParBidiLSTM"sv ||
        type == "DepParUDLSTM"sv) {
        return std::make_unique<Parallel>(readParts(flags, depth));
    }
    static constexpr std::array turns{std::pair{"RTLReversed"sv, Turned::Turn::FromRight},
                                      std::pair{"TTBReversed"sv, Turned::Turn::FromBelow},
                                      std::pair{"XYTranspose"sv, Turned::Turn::Transposed}};
    for (const auto &[name, turn] : turns) {
        if (type == name) {
            Layers parts = readParts(flags, depth);
            return parts.size() == 1 ? std::make_unique<Turned>(turn, std::move(parts.front()))
                                     : failed(reader);
        }
    }
    static constexpr std::array functions{std::pair{"Tanh"sv, Nonlinearity::Tanh},
                                          std::pair{"Logistic"sv, Nonlinearity::Logistic},
                                          std::pair{"Linear"sv, Nonlinearity::Linear},
                                          std::pair{"Relu"sv, Nonlinearity::Relu},
                                          std::pair{"LinLogistic"sv, Nonlinearity::Relu},
                                          std::pair{"LinTanh"sv, Nonlinearity::Linear}};
    for (const auto &[name, function] : functions) {
        if (type == name) {
            const Weights weights = Weights::read(reader);
            return reader.failed() ? nullptr : std::make_unique<FullyConnected>(weights, function);
        }
    }
    if (type == "LSTM"sv || type == "SummLSTM"sv) {
        return readMemory(inputs, type == "SummLSTM"sv);
    }
    if (type == "Convolve"sv || type == "Maxpool"sv) {
        const auto across = reader.value<std::int32_t>();
        const auto down = reader.value<std::int32_t>();
        const bool isWindow = type == "Convolve"sv;
        if (across < (isWindow ? 0 : 1) || across > 16 || down < (isWindow ? 0 : 1) || down > 16) {
            return failed(reader);
        }
        if (isWindow) {
            return std::make_unique<Window>(across, down);
        }
        return std::make_unique<MaxPool>(across, down);
    }
    if (type == "Input"sv) {
        readInput();
        return nullptr;
    }
    if (type == "Softmax"sv) {
        output = Weights::read(reader);
        return nullptr;
    }
    return failed(reader);
}

std::unique_ptr<Layer> LayerReader::read(int depth)
{
    // Zero says that the type's name follows; older files had a number instead.
    if (depth > deepest || reader.value<std::int8_t>() != 0) {
        return failed(reader);
    }
    const std::string_view type = reader.text();
    // Whether it was being trained, and how.
    reader.value<std::int8_t>();
    reader.value<std::int8_t>();
    const auto flags = reader.value<std::int32_t>();
    const auto inputs = reader.value<std::int32_t>();
    // How many outputs and weights it has, which follows from the weights, and a name.
    reader.value<std::int32_t>();
    reader.value<std::int32_t>();
    reader.text();
    if (reader.failed()) {
        return nullptr;
    }
    std::unique_ptr<Layer> layer = readPart(type, inputs, flags, depth);
    return reader.failed() ? nullptr : std::move(layer);
}

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

std::optional<Network> Network::read(ByteReader &reader)
{
    LayerReader layers{reader, 0, {}};
    Network network;
    network.m_body = layers.read(0);
    if (!network.m_body || reader.failed() || layers.lineHeight == 0 ||
        layers.output.outputs == 0 || network.m_body->outputDepth(1) != layers.output.inputs) {
        return std::nullopt;
    }
    network.m_lineHeight = layers.lineHeight;
    network.m_output = ByteMatrix(layers.output, 0, layers.output.inputs, true);
    network.m_outputScales = layers.output.padded().scales;
    return network;
}

CodeShares Network::read(const GreyImage &line) const
{
    const Activations values = m_body->forward(normalized(line));
    CodeShares result;
    result.columns = values.width;
    result.codes = m_output.outputs();
    result.shares.resize(std::size_t(result.columns) * std::size_t(result.stride()));
    constexpr int columnsAtOnce = 16;
    const int sumsSize = m_output.sumsSize();
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * columnsAtOnce);
    for (int x = 0; x < result.columns; x += columnsAtOnce) {
        const int columns = std::min(columnsAtOnce, result.columns - x);
        m_output.multiply(values.at(x, 0), values.stride(), columns, sums.data());
        for (int i = 0; i < columns; ++i) {
            shareOut(sums.data() + std::ptrdiff_t(i) * sumsSize, m_outputScales.data(),
                     result.codes, result.at(x + i));
        }
    }
    return result;
}

} // namespace recognition
