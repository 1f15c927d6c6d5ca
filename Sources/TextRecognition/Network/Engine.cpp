// SPDX-License-Identifier: MIT
#include "Engine.h"

#include "Glyph.h"
#include "LineWords.h"
#include "Resample.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace recognition {

namespace {

/// White around the ink in pixels before scaling: as the models were trained with, and what a
/// line that is not sure is read with again, which makes its letters smaller and larger.
constexpr int usualMargin = 4;
constexpr std::array otherMargins{7, 2};

/// A line read less surely than this is read again, if it has a word less sure than `sureWord`. CER
/// mean of a wide and a plainer corpus: never 4.9 and 1.4 %, below 90 3.1 and 1.2, below 94 3.1
/// and 1.1 with 0.4 points more of the lines right, at a quarter more time.
constexpr double sure = 94;

/// Of 637 lines between both, another reading would
/// have been taken for one.
constexpr double sureWord = 90;

bool isSure(const Reading &reading)
{
    return reading.confidence() >= sure || reading.leastConfidence() >= sureWord;
}

/// The part of `picture` in `box`, which may reach out into the white around it.
GreyImage withWhite(const GreyImage &picture, const Box &box)
{
    GreyImage result(box.width(), box.height(), 255);
    const Box inside{std::max(box.left, 0), std::max(box.top, 0),
                     std::min(box.right, picture.width), std::min(box.bottom, picture.height)};
    for (int y = inside.top; y < inside.bottom; ++y) {
        std::copy(picture.row(y) + inside.left, picture.row(y) + inside.right,
                  result.row(y - box.top) + inside.left - box.left);
    }
    return result;
}

} // namespace

Engine::Engine(QString model, TrainedData data, Network network, Alphabet alphabet, int nothing)
    : m_model(std::move(model))
    , m_data(std::move(data))
    , m_network(std::move(network))
    , m_alphabet(std::move(alphabet))
    , m_lists(m_data.part(TrainedData::Punctuation), m_data.part(TrainedData::Words),
              m_data.part(TrainedData::Numbers))
    , m_nothing(nothing)
{
}

std::shared_ptr<const Engine> Engine::load(const ModelFolder &folder, const QString &model,
                                           Dictionary dictionary)
{
    TrainedData data = folder.read(model, dictionary);
    ByteReader reader(data.part(TrainedData::Network));
    std::optional<Network> network = Network::read(reader);
    std::optional<Alphabet> alphabet =
        Alphabet::read(data.part(TrainedData::Characters), data.part(TrainedData::Codes));
    // After the network: its description and how it was trained.
    reader.text();
    reader.take(3 * sizeof(std::int32_t));
    const auto nothing = reader.value<std::int32_t>();
    if (reader.failed() || !network || !alphabet || nothing < 0 || nothing >= network->codes() ||
        alphabet->codeCount() > network->codes()) {
        return nullptr;
    }
    data.drop(TrainedData::Network);
    data.drop(TrainedData::Characters);
    data.drop(TrainedData::Codes);
    return std::shared_ptr<const Engine>(
        new Engine(model, std::move(data), std::move(*network), std::move(*alphabet), nothing));
}

Reading Engine::read(const GreyImage &picture) const
{
    return readWith(picture, std::array{usualMargin}).front();
}

Reading Engine::readAgain(const GreyImage &picture, Reading first) const
{
    if (isSure(first)) {
        return first;
    }
    Reading best = std::move(first);
    for (Reading &reading : readWith(picture, otherMargins)) {
        if (reading.confidence() > best.confidence() && best.confidence() < sure) {
            best = std::move(reading);
        }
    }
    return best;
}

std::vector<Reading> Engine::readWith(const GreyImage &picture, std::span<const int> margins) const
{
    const Box inked = inkIn(picture, {0, 0, picture.width, picture.height});
    if (inked.isEmpty()) {
        return std::vector(margins.size(), Reading{m_model, {}});
    }
    std::vector<GreyImage> lines;
    std::vector<Box> boxes;
    for (const int margin : margins) {
        const Box box{inked.left - margin, inked.top - margin, inked.right + margin,
                      inked.bottom + margin};
        const int width =
            std::max(int(std::lround(box.width() * scaleOf(box))), m_network.columnWidth());
        lines.push_back(resampled(withWhite(picture, box), width, m_network.lineHeight()));
        boxes.push_back(box);
    }
    std::vector<Reading> readings;
    for (const CodeShares &shares : m_network.read(lines)) {
        const Box &box = boxes[readings.size()];
        const std::vector<DecodedCharacter> characters =
            decode(shares, m_nothing, m_alphabet, m_lists);
        readings.push_back({m_model, wordsOfLine({picture, inked, double(box.left),
                                                  m_network.columnWidth() / scaleOf(box),
                                                  shares.columns, characters},
                                                 m_alphabet)});
    }
    return readings;
}

double Engine::scaleOf(const Box &box) const
{
    return double(m_network.lineHeight()) / box.height();
}

bool Engine::knows(const QString &word) const
{
    const std::optional<std::vector<int>> ids = m_alphabet.split(word);
    return ids && !ids->empty() && !m_lists.isEmpty() && m_lists.contains(*ids, m_alphabet);
}

} // namespace recognition
