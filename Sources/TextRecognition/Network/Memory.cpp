// SPDX-License-Identifier: MIT
#include "Effort.h"
#include "Layers.h"

#include <algorithm>
#include <cstring>

namespace recognition {

namespace {

/// Points whose sums are kept at once: enough to use each weight many times, few enough to stay
/// in the processor's cache.
constexpr int pointsAtOnce = 64;

/// A step of as many rows takes some hundredths of a millisecond.
constexpr int stepsBetweenChecks = 16;

/// The gates below each other, each of whole tiles.
Weights stacked(const std::vector<Weights> &gates)
{
    Weights all = gates.front().padded();
    for (std::size_t i = 1; i < gates.size(); ++i) {
        all.append(gates[i].padded());
    }
    return all;
}

} // namespace

Memory::Memory(const std::vector<Weights> &gates, int inputs, bool isSummary)
    : m_cells(gates.front().outputs)
    , m_isSummary(isSummary)
{
    const Weights all = stacked(gates);
    m_fromInput = ByteMatrix(all, 0, inputs, true);
    m_fromCells = ByteMatrix(all, inputs, m_cells, false);
    m_scales = all.scales;
}

Lines Memory::forward(const Lines &inputs) const
{
    Lines outputs;
    std::vector<std::size_t> single;
    for (const Activations &input : inputs) {
        if (input.height == 1) {
            single.push_back(outputs.size());
        }
        outputs.emplace_back(m_isSummary ? 1 : input.width, input.height, m_cells);
        for (int y = 0; y < input.height && input.height > 1; y += pointsAtOnce) {
            readRows(input, y, std::min(pointsAtOnce, input.height - y), outputs.back());
        }
    }
    // The longest first, so that those that go on stand together.
    std::stable_sort(single.begin(), single.end(), [&inputs](std::size_t a, std::size_t b) {
        return inputs[a].width > inputs[b].width;
    });
    if (!single.empty()) {
        readSingleRows(inputs, single, outputs);
    }
    return outputs;
}

/// One step of each of `rows`, whose sums of the input stand in `sums`.
void Memory::step(std::int32_t *sums, int rows, std::vector<float> &states,
                  std::vector<std::int8_t> &outputs) const
{
    const int paddedCells = paddedTo(m_cells, numbersAtOnce);
    m_fromCells.multiplyAdd(outputs.data(), paddedCells, rows, sums);
    for (int row = 0; row < rows; ++row) {
        stepMemory(sums + std::ptrdiff_t(row) * m_fromInput.sumsSize(), m_scales.data(),
                   paddedCells, states.data() + std::ptrdiff_t(row) * paddedCells,
                   outputs.data() + std::ptrdiff_t(row) * paddedCells);
    }
}

/// Several rows of a line, all at the same step.
void Memory::readRows(const Activations &input, int firstRow, int rows, Activations &output) const
{
    const int paddedCells = paddedTo(m_cells, numbersAtOnce);
    std::vector<std::int32_t> sums(std::size_t(m_fromInput.sumsSize()) * std::size_t(rows));
    std::vector<float> states(std::size_t(paddedCells) * std::size_t(rows), 0);
    std::vector<std::int8_t> outputs(states.size(), 0);
    const std::ptrdiff_t nextRow = std::ptrdiff_t(input.width) * input.stride();
    for (int x = 0; x < input.width; ++x) {
        if (x % stepsBetweenChecks == 0) {
            checkpoint();
        }
        m_fromInput.multiply(input.at(x, firstRow), nextRow, rows, sums.data());
        step(sums.data(), rows, states, outputs);
        for (int row = 0; row < rows && (!m_isSummary || x + 1 == input.width); ++row) {
            std::memcpy(output.at(m_isSummary ? 0 : x, firstRow + row),
                        outputs.data() + std::ptrdiff_t(row) * paddedCells, std::size_t(m_cells));
        }
    }
}

/// The rows of several `lines` of one row, the longest first. Their input is multiplied for several
/// steps at a time.
void Memory::readSingleRows(const Lines &inputs, const std::vector<std::size_t> &lines,
                            Lines &outputs) const
{
    const int paddedCells = paddedTo(m_cells, numbersAtOnce);
    const int sumsSize = m_fromInput.sumsSize();
    const int inputSize = inputs[lines.front()].stride();
    int rows = int(lines.size());
    const auto most = std::size_t(std::max(pointsAtOnce, rows));
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * most);
    std::vector<std::int8_t> points(std::size_t(inputSize) * most);
    std::vector<float> states(std::size_t(paddedCells) * lines.size(), 0);
    std::vector<std::int8_t> rowOutputs(states.size(), 0);
    for (int x = 0;;) {
        checkpoint();
        while (rows > 0 && inputs[lines[std::size_t(rows - 1)]].width <= x) {
            --rows;
        }
        if (rows == 0) {
            break;
        }
        // Until the next line ends.
        const int end = std::min(inputs[lines[std::size_t(rows - 1)]].width,
                                 x + std::max(pointsAtOnce / rows, 1));
        const int first = x;
        for (; x < end; ++x) {
            for (int row = 0; row < rows; ++row) {
                std::memcpy(points.data() + std::ptrdiff_t((x - first) * rows + row) * inputSize,
                            inputs[lines[std::size_t(row)]].at(x, 0), std::size_t(inputSize));
            }
        }
        m_fromInput.multiply(points.data(), inputSize, (end - first) * rows, sums.data());
        for (x = first; x < end; ++x) {
            step(sums.data() + std::ptrdiff_t(x - first) * rows * sumsSize, rows, states,
                 rowOutputs);
            for (int row = 0; row < rows; ++row) {
                const std::size_t line = lines[std::size_t(row)];
                if (!m_isSummary || x + 1 == inputs[line].width) {
                    std::memcpy(outputs[line].at(m_isSummary ? 0 : x, 0),
                                rowOutputs.data() + std::ptrdiff_t(row) * paddedCells,
                                std::size_t(m_cells));
                }
            }
        }
    }
}

Form Memory::output(Form input) const
{
    input.depth = input.depth == m_fromInput.inputs() ? m_cells : 0;
    if (m_isSummary) {
        input.columns = Form::all;
    }
    return input;
}

} // namespace recognition
