// SPDX-License-Identifier: MIT
#pragma once

#include "Activations.h"
#include "ByteMatrix.h"
#include "Nonlinearity.h"

#include <memory>
#include <vector>

namespace recognition {

/// One step of a network. Immutable once made, so that threads share it.
class Layer
{
public:
    Layer() = default;
    virtual ~Layer() = default;
    Layer(const Layer &) = delete;
    Layer &operator=(const Layer &) = delete;

    virtual Activations forward(const Activations &input) const = 0;
    /// Values per point that come out if `depth` go in; 0 if the layer does not fit.
    virtual int outputDepth(int depth) const = 0;
    /// Columns that become one.
    virtual int widthFactor() const { return 1; }
};

using Layers = std::vector<std::unique_ptr<Layer>>;

/// One layer after another.
class Series : public Layer
{
public:
    explicit Series(Layers layers);
    Activations forward(const Activations &input) const override;
    int outputDepth(int depth) const override;
    int widthFactor() const override;

private:
    Layers m_layers;
};

/// All layers on the same input, their outputs side by side in each point.
class Parallel : public Layer
{
public:
    explicit Parallel(Layers layers);
    Activations forward(const Activations &input) const override;
    int outputDepth(int depth) const override;
    int widthFactor() const override;

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
    int outputDepth(int depth) const override;

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
    int outputDepth(int depth) const override;

private:
    int m_across;
    int m_down;
};

/// Keeps the largest values of each `across` by `down` points.
class MaxPool : public Layer
{
public:
    MaxPool(int across, int down);
    Activations forward(const Activations &input) const override;
    int outputDepth(int depth) const override { return depth; }
    int widthFactor() const override { return m_across; }

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
    int outputDepth(int depth) const override;

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
    int outputDepth(int depth) const override;

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
