// SPDX-License-Identifier: MIT
#include "Layers.h"

#include <algorithm>
#include <cstring>

namespace recognition {

namespace {

/// Points whose sums are kept at once: enough to use each weight many times, few enough to stay
/// in the processor's cache.
constexpr int pointsAtOnce = 64;

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

Activations Memory::forward(const Activations &input) const
{
    Activations output(m_isSummary ? 1 : input.width, input.height, m_cells);
    for (int y = 0; y < input.height; y += pointsAtOnce) {
        readRows(input, y, std::min(pointsAtOnce, input.height - y), output);
    }
    return output;
}

void Memory::readRows(const Activations &input, int firstRow, int rows, Activations &output) const
{
    const int paddedCells = paddedTo(m_cells, numbersAtOnce);
    const int sumsSize = m_fromInput.sumsSize();
    // A single row is multiplied several steps at a time, several rows all at the same step.
    const int stepsAtOnce = rows == 1 ? pointsAtOnce : 1;
    std::vector<std::int32_t> sums(std::size_t(sumsSize) * std::size_t(rows * stepsAtOnce));
    std::vector<float> states(std::size_t(paddedCells) * std::size_t(rows), 0);
    std::vector<std::int8_t> outputs(states.size(), 0);
    for (int x = 0; x < input.width; x += stepsAtOnce) {
        const int steps = std::min(stepsAtOnce, input.width - x);
        const std::ptrdiff_t nextRow = std::ptrdiff_t(input.width) * input.stride();
        m_fromInput.multiply(input.at(x, firstRow), rows == 1 ? input.stride() : nextRow,
                             rows == 1 ? steps : rows, sums.data());
        for (int step = 0; step < steps; ++step) {
            std::int32_t *stepSums = sums.data() + std::ptrdiff_t(step) * sumsSize;
            m_fromCells.multiplyAdd(outputs.data(), paddedCells, rows, stepSums);
            for (int row = 0; row < rows; ++row) {
                std::int8_t *rowOutputs = outputs.data() + std::ptrdiff_t(row) * paddedCells;
                stepMemory(stepSums + std::ptrdiff_t(row) * sumsSize, m_scales.data(), paddedCells,
                           states.data() + std::ptrdiff_t(row) * paddedCells, rowOutputs);
                if (!m_isSummary || x + step + 1 == input.width) {
                    std::memcpy(output.at(m_isSummary ? 0 : x + step, firstRow + row), rowOutputs,
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
