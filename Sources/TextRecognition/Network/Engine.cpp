// SPDX-License-Identifier: MIT
#include "Engine.h"

#include "Apostrophe.h"
#include "Glyph.h"
#include "Resample.h"
#include "VisualOrder.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Darker pixels are ink.
constexpr int ink = 165;

/// White around the ink in pixels before scaling: as the models were trained with, and what a
/// line that is not sure is read with again, which makes its letters smaller and larger.
constexpr std::array margins{4, 7, 2};

/// A line read less surely than this is read again. CER mean of a wide and a plainer corpus: never
/// 4.9 and 1.4 %, below 90 3.1 and 1.2, below 94 3.1 and 1.1 with 0.4 points more of the lines
/// right, at a quarter more time.
constexpr double sure = 94;

/// Certainty is a logarithm; the share of confidence, from 0 to 100, that one of it takes.
constexpr double confidencePerCertainty = 35;

bool hasInk(const GreyImage &picture, int left, int right, int top, int bottom)
{
    for (int y = top; y < bottom; ++y) {
        const std::uint8_t *row = picture.row(y);
        if (std::any_of(row + left, row + right, [](std::uint8_t grey) { return grey < ink; })) {
            return true;
        }
    }
    return false;
}

/// The part of `box` with ink; empty without any.
Box inkIn(const GreyImage &picture, Box box)
{
    const auto isBlank = [&picture](int left, int right, int top, int bottom) {
        return !hasInk(picture, left, right, top, bottom);
    };
    while (box.top < box.bottom && isBlank(box.left, box.right, box.top, box.top + 1)) {
        ++box.top;
    }
    while (box.bottom > box.top && isBlank(box.left, box.right, box.bottom - 1, box.bottom)) {
        --box.bottom;
    }
    while (box.left < box.right && isBlank(box.left, box.left + 1, box.top, box.bottom)) {
        ++box.left;
    }
    while (box.right > box.left && isBlank(box.right - 1, box.right, box.top, box.bottom)) {
        --box.right;
    }
    return box;
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

bool startsSmall(const QString &text)
{
    return !text.isEmpty() && text.front().isLower();
}

bool endsInArabic(const QString &text)
{
    return !text.isEmpty() && text.back().direction() == QChar::DirAL;
}

/// Characters `first` to `last` - 1.
struct WordSpan
{
    std::size_t first = 0;
    std::size_t last = 0;
    /// Of the blanks around it.
    float blankCertainty = 0;
    bool afterBlank = false;
};

/// Words end at blanks, at listed words, and at every character of a script without blanks.
std::vector<WordSpan> wordsOf(const std::vector<DecodedCharacter> &characters,
                              const Alphabet &alphabet)
{
    std::vector<WordSpan> words;
    float blankBefore = 0;
    std::size_t first = 0;
    while (first < characters.size()) {
        std::size_t last = first + 1;
        for (; last < characters.size(); ++last) {
            const DecodedCharacter &next = characters[last];
            if (next.id == Alphabet::space || next.startsWord ||
                (next.kind == WordKind::Unlisted &&
                 !(alphabet.character(next.id).hasBlanks &&
                   alphabet.character(characters[last - 1].id).hasBlanks))) {
                break;
            }
        }
        const bool endsInBlank = last < characters.size() && characters[last].id == Alphabet::space;
        const float blankAfter = endsInBlank ? characters[last].certainty : 0;
        words.push_back({first, last, std::min(blankBefore, blankAfter),
                         first > 0 && characters[first - 1].id == Alphabet::space});
        blankBefore = blankAfter;
        first = last + (endsInBlank ? 1 : 0);
    }
    return words;
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
    return readWith(picture, margins.front());
}

Reading Engine::readAgain(const GreyImage &picture, Reading first) const
{
    Reading best = std::move(first);
    for (std::size_t i = 1; i < margins.size() && best.confidence() < sure; ++i) {
        Reading reading = readWith(picture, margins[i]);
        if (reading.confidence() > best.confidence()) {
            best = std::move(reading);
        }
    }
    return best;
}

Reading Engine::readWith(const GreyImage &picture, int margin) const
{
    Reading reading{m_model, {}};
    const Box inked = inkIn(picture, {0, 0, picture.width, picture.height});
    if (inked.isEmpty()) {
        return reading;
    }
    const Box box{inked.left - margin, inked.top - margin, inked.right + margin,
                  inked.bottom + margin};
    const double scale = double(m_network.lineHeight()) / box.height();
    const int width = std::max(int(std::lround(box.width() * scale)), m_network.columnWidth());
    const CodeShares shares =
        m_network.read(resampled(withWhite(picture, box), width, m_network.lineHeight()));
    const std::vector<DecodedCharacter> characters = decode(shares, m_nothing, m_alphabet, m_lists);

    const double columnWidth = m_network.columnWidth() / scale;
    const auto isSmall = [&](std::size_t i) {
        return i < characters.size() && startsSmall(m_alphabet.character(characters[i].id).text);
    };
    const auto isBesideSmall = [&](std::size_t i) {
        return isSmall(i + 1) || (i > 0 && isSmall(i - 1));
    };
    // In a line from right to left the letter before a mark stands right of it.
    const auto isAfterArabic = [&](std::size_t i) {
        return i + 1 < characters.size() &&
               endsInArabic(m_alphabet.character(characters[i + 1].id).text);
    };
    Apostrophes apostrophes;
    QList<QString> texts;
    QList<ReadWord> words;
    for (const WordSpan &span : wordsOf(characters, m_alphabet)) {
        ReadWord word;
        float certainty = span.blankCertainty;
        for (std::size_t i = span.first; i < span.last; ++i) {
            QString text = m_alphabet.character(characters[i].id).text;
            // A column more to each side: where in its columns a letter stands is not known.
            const Box place{box.left + int((characters[i].left - 1) * columnWidth), inked.top,
                            box.left + int((characters[i].right + 1) * columnWidth), inked.bottom};
            if (isApostrophe(text)) {
                apostrophes.add(leanOfApostrophe(picture, place));
            } else if ((text == u"."_s || text == u","_s) && isAfterArabic(i)) {
                const std::optional<Glyph> glyph = glyphAt(picture, place, inked.height() / 3);
                if (text == u","_s || (glyph && isComma(*glyph))) {
                    text = u"،"_s;
                }
            } else if (text == u"L"_s && isBesideSmall(i)) {
                const std::optional<Glyph> glyph = glyphAt(picture, place, inked.height());
                if (glyph && isSmallL(*glyph)) {
                    text = u"l"_s;
                }
            }
            word.text += text;
            certainty = std::min(certainty, characters[i].certainty);
        }
        word.text = word.text.trimmed();
        if (word.text.isEmpty()) {
            continue;
        }
        word.afterBlank = span.afterBlank;
        word.isListed = characters[span.last - 1].kind == WordKind::Listed;
        word.confidence = std::clamp(100 + confidencePerCertainty * double(certainty), 0.0, 100.0);
        // Characters share what is between them.
        const int before = span.first > 0 ? characters[span.first - 1].right : 0;
        const int after =
            span.last < characters.size() ? characters[span.last].left : shares.columns;
        const double left = (before + characters[span.first].left) / 2.0;
        const double right = (characters[span.last - 1].right + after) / 2.0;
        const Box place{
            std::clamp(box.left + int(left * columnWidth), 0, picture.width - 1), inked.top,
            std::clamp(box.left + int(std::ceil(right * columnWidth)), 1, picture.width),
            inked.bottom};
        const Box inkOfWord = inkIn(picture, place);
        word.box = inkOfWord.isEmpty() ? place : inkOfWord;
        texts.append(word.text);
        words.append(word);
    }
    apostrophes.settle(texts);
    int before = -1;
    for (const int i : toReadingOrder(texts)) {
        ReadWord word = words[i];
        word.text = texts[i];
        // The blank is kept by the right one of two neighbours, whichever is read first.
        word.afterBlank =
            reading.isEmpty() || std::abs(i - before) > 1 || words[std::max(i, before)].afterBlank;
        reading.words.append(word);
        before = i;
    }
    return reading;
}

bool Engine::knows(const QString &word) const
{
    const std::optional<std::vector<int>> ids = m_alphabet.split(word);
    return ids && !ids->empty() && !m_lists.isEmpty() && m_lists.contains(*ids, m_alphabet);
}

} // namespace recognition
