// SPDX-License-Identifier: MIT
#pragma once

#include "ByteReader.h"
#include "Layers.h"

#include <memory>
#include <optional>

namespace recognition {

/// A network as it stands in trained data. Its parts fit each other, and turn a line of any width
/// into one row of points.
struct NetworkParts
{
    /// In pixels.
    int lineHeight = 0;
    /// Pixels per point of the row.
    int columnWidth = 1;
    /// All layers but the last.
    std::unique_ptr<Layer> body;
    /// The last layer, which gives shares instead of bytes.
    Weights output;
};

/// Takes a network off `reader`; nothing if it is damaged or of another form.
std::optional<NetworkParts> readNetwork(ByteReader &reader);

} // namespace recognition
