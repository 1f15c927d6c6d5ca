// SPDX-License-Identifier: MIT
#include "Engine.h"

#include "Effort.h"
#include "LineWords.h"
#include "NetworkLine.h"
#include "TextEvidence.h"

#include <array>

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
    checkpoint();
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

std::vector<Reading> Engine::read(const Pictures &pictures) const
{
    std::vector<NetworkLine> parts;
    parts.reserve(pictures.size());
    for (const GreyImage *picture : pictures) {
        parts.emplace_back(*picture, usualMargin);
    }
    return readParts(parts);
}

Reading Engine::read(const GreyImage &picture) const
{
    return read(Pictures{&picture}).front();
}

bool Engine::isSure(const Reading &reading)
{
    return reading.confidence() >= sure || reading.leastConfidence() >= sureWord;
}

std::vector<Reading> Engine::readAgain(const Pictures &pictures, std::vector<Reading> first) const
{
    std::vector<NetworkLine> parts;
    std::vector<std::size_t> lines;
    for (std::size_t line = 0; line < pictures.size(); ++line) {
        for (const int margin : otherMargins) {
            if (!isSure(first[line])) {
                parts.emplace_back(*pictures[line], margin);
                lines.push_back(line);
            }
        }
    }
    std::vector<Reading> readings = readParts(parts);
    std::vector<Reading> best = std::move(first);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        Reading &line = best[lines[i]];
        if (readings[i].confidence() > line.confidence() && line.confidence() < sure) {
            line = std::move(readings[i]);
        }
    }
    return best;
}

Reading Engine::readAgain(const GreyImage &picture, Reading first) const
{
    return readAgain(Pictures{&picture}, std::vector{std::move(first)}).front();
}

std::vector<Reading> Engine::readParts(const std::vector<NetworkLine> &parts) const
{
    std::vector<Reading> readings(parts.size(), Reading{m_model, {}});
    std::vector<GreyImage> lines;
    std::vector<std::size_t> inked;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!parts[i].inked.isEmpty()) {
            lines.push_back(parts[i].line(m_network.lineHeight(), m_network.columnWidth()));
            inked.push_back(i);
        }
    }
    const Lines values = m_network.read(lines);
    for (std::size_t k = 0; k < values.size(); ++k) {
        const NetworkLine &part = parts[inked[k]];
        const CodeShares shares = m_network.shares(values[k]);
        const std::vector<DecodedCharacter> characters =
            decode(shares, m_nothing, m_alphabet, m_lists);
        readings[inked[k]].words =
            wordsOfLine({part.picture, part.inked, double(part.box.left),
                         m_network.columnWidth() / part.scale(m_network.lineHeight()),
                         shares.columns, characters},
                        m_alphabet);
        if (Effort *effort = Effort::current(); effort && isSurelyText(readings[inked[k]])) {
            effort->foundText();
        }
    }
    return readings;
}

CellCharacters Engine::cellCharacters() const
{
    return CellCharacters(m_alphabet, m_network.codes(), m_nothing);
}

std::vector<DecodedCells> Engine::readCells(const std::vector<CellLine> &lines,
                                            const CellCharacters &characters) const
{
    std::vector<GreyImage> pictures;
    pictures.reserve(lines.size());
    for (const CellLine &line : lines) {
        pictures.push_back(line.picture);
    }
    const Lines values = m_network.read(pictures);
    std::vector<DecodedCells> decoded;
    decoded.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        decoded.push_back(decodeCells(m_network.shares(values[i]), lines[i].cells, characters));
    }
    return decoded;
}

bool Engine::knows(const QString &word) const
{
    const std::optional<std::vector<int>> ids = m_alphabet.split(word);
    return ids && !ids->empty() && !m_lists.isEmpty() && m_lists.contains(*ids, m_alphabet);
}

} // namespace recognition
