// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Layers.h"

#include <optional>

namespace recognition {

struct NetworkParts;

/// How likely each code is in each column of a line.
struct CodeShares
{
    int columns = 0;
    int codes = 0;
    std::vector<float> shares;

    int stride() const { return paddedTo(codes, numbersAtOnce); }
    const float *at(int column) const { return shares.data() + std::size_t(column) * stride(); }
    float *at(int column) { return shares.data() + std::size_t(column) * stride(); }
};

/// A network of the form that Tesseract trains, read from its trained data: a line of text in,
/// the likelihood of codes out. Immutable, so that threads share it.
class Network
{
public:
    /// Takes a network off `reader`; nothing if it is damaged or of another form.
    static std::optional<Network> read(ByteReader &reader);

    /// The height of the lines it reads, in pixels.
    int lineHeight() const { return m_lineHeight; }
    /// Pixels of a line per column of the result.
    int columnWidth() const { return m_columnWidth; }
    int codes() const { return m_output.outputs(); }

    /// What the last layer but one makes of `lines`, which are `lineHeight` high, dark on white. To
    /// read several at once, of about one length, takes less time than to read each alone and gives
    /// the same.
    Lines read(const std::vector<GreyImage> &lines) const;
    /// What the last layer makes of one of them, which may take megabytes.
    CodeShares shares(const Activations &line) const;

private:
    explicit Network(NetworkParts parts);

    int m_lineHeight;
    int m_columnWidth;
    std::unique_ptr<Layer> m_body;
    ByteMatrix m_output;
    std::vector<float> m_outputScales;
};

} // namespace recognition
