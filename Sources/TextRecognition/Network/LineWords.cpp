// SPDX-License-Identifier: MIT
#include "LineWords.h"

#include "Apostrophe.h"
#include "Glyph.h"
#include "Underscore.h"
#include "VisualOrder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Certainty is a logarithm; the share of confidence, from 0 to 100, that one of it takes.
constexpr double confidencePerCertainty = 35;

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

class LineWords
{
public:
    LineWords(const DecodedLine &line, const Alphabet &alphabet)
        : m_line(line)
        , m_alphabet(alphabet)
    {
    }

    QList<ReadWord> take();

private:
    const QString &characterAt(std::size_t i) const
    {
        static const QString none;
        const auto &characters = m_line.characters;
        return i < characters.size() ? m_alphabet.character(characters[i].id).text : none;
    }
    /// Whether character `i` parts words, or there is none.
    bool isBlankOrEnd(std::size_t i) const
    {
        return i >= m_line.characters.size() || m_line.characters[i].id == Alphabet::space;
    }
    QString seenAt(std::size_t i);
    ReadWord wordOf(const WordSpan &span);
    Box boxOf(const WordSpan &span) const;
    Gap gapBefore(const WordSpan &span) const;

    const DecodedLine &m_line;
    const Alphabet &m_alphabet;
    Apostrophes m_apostrophes;
};

bool isSmall(const QString &text)
{
    return !text.isEmpty() && text.front().isLower();
}

/// The character as it looks.
QString LineWords::seenAt(std::size_t i)
{
    const QString &text = characterAt(i);
    // A column more to each side: where in its columns a letter stands is not known.
    const DecodedCharacter &character = m_line.characters[i];
    const Box place{int(m_line.left + (character.left - 1) * m_line.columnWidth), m_line.inked.top,
                    int(m_line.left + (character.right + 1) * m_line.columnWidth),
                    m_line.inked.bottom};
    if (isApostrophe(text)) {
        m_apostrophes.add(leanOfApostrophe(m_line.picture, place));
        return text;
    }
    if (text == u"L"_s && (isSmall(characterAt(i + 1)) || (i > 0 && isSmall(characterAt(i - 1))))) {
        const auto glyph = glyphAt(m_line.picture, place, m_line.inked.height());
        return glyph && isSmallL(*glyph) ? u"l"_s : text;
    }
    if (text == u"|"_s && m_line.characters.size() > 2 && isBlankOrEnd(i - 1) &&
        (isBlankOrEnd(i + 1) || isSmall(characterAt(i + 1)))) {
        const auto glyph = glyphAt(m_line.picture, place, m_line.inked.height());
        return glyph && isCapitalI(*glyph, m_line.picture, m_line.inked) ? u"I"_s : text;
    }
    return text;
}

Box LineWords::boxOf(const WordSpan &span) const
{
    const auto &characters = m_line.characters;
    // Characters share what is between them.
    const int before = span.first > 0 ? characters[span.first - 1].right : 0;
    const int after = span.last < characters.size() ? characters[span.last].left : m_line.columns;
    const double left = (before + characters[span.first].left) / 2.0;
    const double right = (characters[span.last - 1].right + after) / 2.0;
    const int width = m_line.picture.width;
    const Box place{
        std::clamp(int(m_line.left + std::floor(left * m_line.columnWidth)), 0, width - 1),
        m_line.inked.top,
        std::clamp(int(m_line.left + std::ceil(right * m_line.columnWidth)), 1, width),
        m_line.inked.bottom};
    const Box ink = inkIn(m_line.picture, place);
    return ink.isEmpty() ? place : ink;
}

/// What is seen between a word and the one left of it.
Gap LineWords::gapBefore(const WordSpan &span) const
{
    const auto isLatin = [](const QString &text) {
        return !text.isEmpty() && text.front().unicode() < 0x250;
    };
    if (!span.afterBlank || span.first < 2 || !isLatin(characterAt(span.first)) ||
        !isLatin(characterAt(span.first - 2))) {
        return {};
    }
    const auto column = [this](int at) {
        return std::clamp(int(m_line.left + at * m_line.columnWidth), 0, m_line.picture.width);
    };
    return gapAt(m_line.picture, {column(m_line.characters[span.first - 2].right), m_line.inked.top,
                                  column(m_line.characters[span.first].left), m_line.inked.bottom});
}

ReadWord LineWords::wordOf(const WordSpan &span)
{
    ReadWord word;
    float certainty = span.blankCertainty;
    for (std::size_t i = span.first; i < span.last; ++i) {
        word.text += seenAt(i);
        certainty = std::min(certainty, m_line.characters[i].certainty);
    }
    word.text = word.text.trimmed();
    word.afterBlank = span.afterBlank;
    word.isListed = m_line.characters[span.last - 1].kind == WordKind::Listed;
    word.confidence = std::clamp(100 + confidencePerCertainty * double(certainty), 0.0, 100.0);
    word.box = boxOf(span);
    return word;
}

QList<ReadWord> LineWords::take()
{
    QList<QString> texts;
    QList<ReadWord> words;
    for (const WordSpan &span : wordsOf(m_line.characters, m_alphabet)) {
        ReadWord word = wordOf(span);
        if (!word.text.isEmpty()) {
            if (const Gap gap = gapBefore(span); !gap.underscores.isEmpty() && !words.isEmpty()) {
                word.afterBlank = gap.blankAfter || gap.blankBefore;
                QString &joined = gap.blankAfter ? texts.back() : word.text;
                joined = gap.blankAfter ? joined + gap.underscores : gap.underscores + joined;
                word.isListed = false;
            }
            texts.append(word.text);
            words.append(word);
        }
    }
    m_apostrophes.settle(texts);
    QList<ReadWord> ordered;
    int before = -1;
    for (const int i : toReadingOrder(texts)) {
        ReadWord word = words[i];
        word.text = texts[i];
        // The blank is kept by the right one of two neighbours, whichever is read first.
        word.afterBlank =
            ordered.isEmpty() || std::abs(i - before) > 1 || words[std::max(i, before)].afterBlank;
        ordered.append(word);
        before = i;
    }
    return ordered;
}

} // namespace

QList<ReadWord> wordsOfLine(const DecodedLine &line, const Alphabet &alphabet)
{
    return LineWords(line, alphabet).take();
}

} // namespace recognition
