// SPDX-License-Identifier: MIT
#pragma once

#include "Activations.h"
#include "ByteMatrix.h"
#include "Nonlinearity.h"

#include <memory>
#include <utility>
#include <vector>

namespace recognition {

/// What the points between two layers are, measured by the line that a network reads.
struct Form
{
    /// Columns or rows of which a single one is left, however many there were.
    static constexpr int all = 0;

    /// Values per point; 0 if a layer does not fit what goes in.
    int depth = 1;
    /// How many of the line's became one.
    int columns = 1;
    int rows = 1;
};

/// Lines that a network reads together: weights are fetched from memory once for all of them, and
/// what comes out is what would of each alone.
using Lines = std::vector<Activations>;

/// What `work` makes of each line.
template <typename Work>
Lines eachOf(const Lines &inputs, const Work &work)
{
    Lines outputs;
    outputs.reserve(inputs.size());
    for (const Activations &input : inputs) {
        outputs.push_back(work(input));
    }
    return outputs;
}

/// One step of a network. Immutable once made, so that threads share it.
class Layer
{
public:
    Layer() = default;
    virtual ~Layer() = default;
    Layer(const Layer &) = delete;
    Layer &operator=(const Layer &) = delete;

    /// One grid for each of `inputs`; none if there are none.
    virtual Lines forward(const Lines &inputs) const = 0;
    /// What comes out if `input` goes in, which is of a depth; `forward` is for what fits only.
    virtual Form output(Form input) const = 0;
};

using Layers = std::vector<std::unique_ptr<Layer>>;

/// One layer after another.
class Series : public Layer
{
public:
    explicit Series(Layers layers);
    /// Leaves none.
    Layers takeLayers() { return std::move(m_layers); }
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Layers m_layers;
};

/// All layers on the same input, their outputs side by side in each point.
class Parallel : public Layer
{
public:
    explicit Parallel(Layers layers);
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Layers m_layers;
};

/// A layer that runs from the right, from below, or down the columns instead of along the rows.
class Turned : public Layer
{
public:
    enum class Turn { FromRight, FromBelow, Transposed };
    Turned(Turn turn, std::unique_ptr<Layer> layer);
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Turn m_turn;
    std::unique_ptr<Layer> m_layer;
};

/// Gathers the surroundings of every point.
class Window : public Layer
{
public:
    /// So many points to each side.
    Window(int across, int down);
    int across() const { return m_across; }
    int down() const { return m_down; }
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Activations around(const Activations &input) const;
    int points() const { return (2 * m_across + 1) * (2 * m_down + 1); }

    int m_across;
    int m_down;
};

/// Keeps the largest values of each `across` by `down` points.
class MaxPool : public Layer
{
public:
    MaxPool(int across, int down);
    int across() const { return m_across; }
    int down() const { return m_down; }
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Activations pooled(const Activations &input) const;

    int m_across;
    int m_down;
};

/// Every output from all values of its point.
class FullyConnected : public Layer
{
public:
    FullyConnected(const Weights &weights, Nonlinearity nonlinearity);
    const ByteMatrix &matrix() const { return m_weights; }
    const std::vector<float> &scales() const { return m_scales; }
    /// A point's outputs from the matrix's sums.
    void finish(const std::int32_t *sums, std::int8_t *outputs) const;
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Activations weighed(const Activations &input) const;

    ByteMatrix m_weights;
    std::vector<float> m_scales;
    Nonlinearity m_nonlinearity;
};

/// Long short-term memory along each row.
class Memory : public Layer
{
public:
    /// `gates`: inputs, input gates, forget gates, output gates, each of as many rows as there are
    /// cells and columns for the layer's `inputs` and the cells' last outputs. With `isSummary`
    /// only what comes out at the end of a row is given.
    Memory(const std::vector<Weights> &gates, int inputs, bool isSummary);
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    void readRows(const Activations &input, int firstRow, int rows, Activations &output) const;
    void readSingleRows(const Lines &inputs, const std::vector<std::size_t> &lines,
                        Lines &outputs) const;
    void step(std::int32_t *sums, int rows, std::vector<float> &states,
              std::vector<std::int8_t> &outputs) const;

    int m_cells;
    bool m_isSummary;
    /// Gates below each other, each padded to whole tiles.
    ByteMatrix m_fromInput;
    ByteMatrix m_fromCells;
    std::vector<float> m_scales;
};

} // namespace recognition
