// SPDX-License-Identifier: MIT
#pragma once

#include "Activations.h"
#include "ByteMatrix.h"
#include "Nonlinearity.h"

#include <memory>
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

/// One step of a network. Immutable once made, so that threads share it.
class Layer
{
public:
    Layer() = default;
    virtual ~Layer() = default;
    Layer(const Layer &) = delete;
    Layer &operator=(const Layer &) = delete;

    virtual Activations forward(const Activations &input) const = 0;
    /// What comes out if `input` goes in, which is of a depth; `forward` is for what fits only.
    virtual Form output(Form input) const = 0;
};

using Layers = std::vector<std::unique_ptr<Layer>>;

/// One layer after another.
class Series : public Layer
{
public:
    explicit Series(Layers layers);
    Activations forward(const Activations &input) const override;
    Form output(Form input) const override;

private:
    Layers m_layers;
};

/// All layers on the same input, their outputs side by side in each point.
class Parallel : public Layer
{
public:
    explicit Parallel(Layers layers);
    Activations forward(const Activations &input) const override;
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
    Activations forward(const Activations &input) const override;
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
    Activations forward(const Activations &input) const override;
    Form output(Form input) const override;

private:
    int points() const { return (2 * m_across + 1) * (2 * m_down + 1); }

    int m_across;
    int m_down;
};

/// Keeps the largest values of each `across` by `down` points.
class MaxPool : public Layer
{
public:
    MaxPool(int across, int down);
    Activations forward(const Activations &input) const override;
    Form output(Form input) const override;

private:
    int m_across;
    int m_down;
};

/// Every output from all values of its point.
class FullyConnected : public Layer
{
public:
    FullyConnected(const Weights &weights, Nonlinearity nonlinearity);
    Activations forward(const Activations &input) const override;
    Form output(Form input) const override;

private:
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
    Activations forward(const Activations &input) const override;
    Form output(Form input) const override;

private:
    void readRows(const Activations &input, int firstRow, int rows, Activations &output) const;

    int m_cells;
    bool m_isSummary;
    /// Gates below each other, each padded to whole tiles.
    ByteMatrix m_fromInput;
    ByteMatrix m_fromCells;
    std::vector<float> m_scales;
};

} // namespace recognition
