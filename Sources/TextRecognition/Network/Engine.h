// SPDX-License-Identifier: MIT
#pragma once

#include "CellDecoder.h"
#include "Decoder.h"
#include "GreyImage.h"
#include "Model.h"
#include "Network.h"
#include "Reading.h"

#include <memory>
#include <vector>

namespace recognition {

/// A line of characters in cells, as high as the network's lines.
struct CellLine
{
    GreyImage picture;
    std::vector<CellPlace> cells;
};

struct NetworkLine;

/// One model, loaded: its network, its characters and its words. Immutable, so that threads share
/// it.
class Engine
{
public:
    using Pictures = std::vector<const GreyImage *>;

    /// Nothing if the model is not there, damaged, or not of the form of a line recognizer.
    static std::shared_ptr<const Engine> load(const ModelFolder &folder, const QString &model,
                                              Dictionary dictionary);

    /// Lines of text, dark on white. Of Japanese in columns one column, turned to the left. Several
    /// of about one length take less time together than alone, and are read the same.
    std::vector<Reading> read(const Pictures &pictures) const;
    Reading read(const GreyImage &picture) const;
    /// The surest readings of lines that were read as `first`: those that are not sure already are
    /// read with their letters smaller and larger.
    std::vector<Reading> readAgain(const Pictures &pictures, std::vector<Reading> first) const;
    Reading readAgain(const GreyImage &picture, Reading first) const;
    /// Whether `readAgain` would leave it as it is.
    static bool isSure(const Reading &reading);
    /// The height of the lines that the network reads, and pixels of them per column of its result.
    int lineHeight() const { return m_network.lineHeight(); }
    int columnWidth() const { return m_network.columnWidth(); }
    CellCharacters cellCharacters() const;
    /// How likely each of `characters` is in each cell of `lines`, of about one length.
    std::vector<DecodedCells> readCells(const std::vector<CellLine> &lines,
                                        const CellCharacters &characters) const;
    /// Whether the model's dictionary has `word`; never without one.
    bool knows(const QString &word) const;

private:
    std::vector<Reading> readParts(const std::vector<NetworkLine> &parts) const;
    Engine(QString model, TrainedData data, Network network, Alphabet alphabet, int nothing);

    const QString m_model;
    /// Holds the word lists.
    const TrainedData m_data;
    const Network m_network;
    const Alphabet m_alphabet;
    const WordLists m_lists;
    /// The code that stands for no character.
    const int m_nothing;
};

} // namespace recognition
