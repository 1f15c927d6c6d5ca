// SPDX-License-Identifier: MIT
#pragma once

#include "Decoder.h"
#include "GreyImage.h"
#include "Model.h"
#include "Network.h"
#include "Reading.h"

#include <memory>
#include <span>
#include <vector>

namespace recognition {

/// One model, loaded: its network, its characters and its words. Immutable, so that threads share
/// it.
class Engine
{
public:
    /// Nothing if the model is not there, damaged, or not of the form of a line recognizer.
    static std::shared_ptr<const Engine> load(const ModelFolder &folder, const QString &model,
                                              Dictionary dictionary);

    /// One line of text, dark on white. Of Japanese in columns one column, turned to the left.
    Reading read(const GreyImage &picture) const;
    /// The surest reading of a line that was read as `first`: unless that is sure already, the
    /// line is read with its letters smaller and larger.
    Reading readAgain(const GreyImage &picture, Reading first) const;
    /// Whether the model's dictionary has `word`; never without one.
    bool knows(const QString &word) const;

private:
    std::vector<Reading> readWith(const GreyImage &picture, std::span<const int> margins) const;
    double scaleOf(const Box &box) const;
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
