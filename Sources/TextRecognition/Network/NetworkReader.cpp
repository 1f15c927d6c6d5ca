// SPDX-License-Identifier: MIT
#include "NetworkReader.h"

#include "Convolution.h"
#include "Effort.h"

#include <array>
#include <string_view>
#include <utility>

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
        checkpoint();
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
        return std::make_unique<Series>(withConvolutions(readParts(flags, depth)));
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

} // namespace

std::optional<NetworkParts> readNetwork(ByteReader &reader)
{
    LayerReader layers{reader, 0, {}};
    std::unique_ptr<Layer> body = layers.read(0);
    if (!body || reader.failed() || layers.lineHeight == 0 || layers.output.outputs == 0) {
        return std::nullopt;
    }
    const Form form = body->output({});
    const bool isOneRow = form.rows == Form::all || layers.lineHeight < 2 * form.rows;
    if (form.depth != layers.output.inputs || form.columns == Form::all || !isOneRow) {
        return std::nullopt;
    }
    return NetworkParts{layers.lineHeight, form.columns, std::move(body), std::move(layers.output)};
}

} // namespace recognition
