// SPDX-License-Identifier: MIT
#pragma once

#include "Layers.h"

namespace recognition {

/// A window, the layer that weighs it and a pool in one: gives what the three give one after
/// another, but never holds the windows, and of each pool's sums only the largest go through the
/// function.
class Convolution : public Layer
{
public:
    /// Whether a single layer can do it: with negative scales the largest sum is not the largest
    /// output.
    static bool fits(const FullyConnected &weights);

    /// `weights` must fit.
    Convolution(std::unique_ptr<Window> window, std::unique_ptr<FullyConnected> weights,
                std::unique_ptr<MaxPool> pool);
    Lines forward(const Lines &inputs) const override;
    Form output(Form input) const override;

private:
    Activations convolved(const Activations &input) const;
    void poolRow(const Activations &input, int row, Activations &output) const;

    std::unique_ptr<Window> m_window;
    std::unique_ptr<FullyConnected> m_weights;
    std::unique_ptr<MaxPool> m_pool;
};

/// `layers`, which follow each other, with such three as one, also where some stand in a series of
/// their own.
Layers withConvolutions(Layers layers);

} // namespace recognition
