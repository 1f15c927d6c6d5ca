// SPDX-License-Identifier: MIT
#include "IndicNumbers.h"

#include "Glyph.h"
#include "IndicDigits.h"
#include "MixedScripts.h"
#include "Places.h"

#include <algorithm>

namespace recognition {

namespace {

/// A word in the model's lists is no number, however it looks, if it is read so surely.
constexpr double sureListed = 80;

/// Words less sure than this are read again without the number beside them.
constexpr double undisturbed = 90;

/// Words of a line that was read as of another script are kept if they are so sure.
constexpr double sureForeign = 80;

/// Parts between numbers that are narrower, in pixels of the prepared line, hold no letter.
constexpr int narrowestPart = 4;

/// How much of a word lies in the columns of `box`.
double shareWithin(const ReadWord &word, const Box &box)
{
    return double(std::max(0, horizontalOverlap(word.box, box))) / std::max(1, word.box.width());
}

bool isWithin(const ReadWord &word, const Box &box)
{
    return shareWithin(word, box) > 0.6;
}

bool hasArabicLetters(const ReadWord &word)
{
    return countLetters(word.text, Script::Arabic).own > 1;
}

/// Whether the line's reading knows better than to take it for a number.
bool isRefuted(const IndicNumber &number, const LineTask &task)
{
    if (!number.isUnmistakable() && task.script != Script::Arabic) {
        return true;
    }
    const QList<ReadWord> &words = task.best.words;
    return std::any_of(words.begin(), words.end(), [&](const ReadWord &word) {
        return isWithin(word, number.box) && word.isListed && word.confidence >= sureListed &&
               hasArabicLetters(word);
    });
}

std::vector<IndicNumber> numbersOf(const LineTask &task)
{
    std::vector<IndicNumber> numbers = indicNumbers(task.image().picture, preparedLetterHeight);
    std::erase_if(numbers, [&task](const IndicNumber &number) { return isRefuted(number, task); });
    return numbers;
}

bool hasUnmistakable(const std::vector<IndicNumber> &numbers)
{
    return std::any_of(numbers.begin(), numbers.end(),
                       [](const IndicNumber &number) { return number.isUnmistakable(); });
}

/// What may be a word of Latin script is left for its model to doubt.
double confidenceOf(const IndicNumber &number)
{
    return number.isUnmistakable() ? 97 : 80;
}

/// Of each place the surer words of two readings.
QList<ReadWord> surerWords(const Reading &a, const Reading &b)
{
    QList<ReadWord> words;
    for (const Place &place : placesOf(a, b)) {
        words += confidence(place.other) > confidence(place.base) ? place.other : place.base;
    }
    return words;
}

class NumberedLine
{
public:
    NumberedLine(LineTask &task, const QString &arabic, EngineCache &engines)
        : m_task(task)
        , m_arabic(arabic)
        , m_engines(engines)
    {
    }

    Reading readingWith(const std::vector<IndicNumber> &numbers) const
    {
        Reading reading{m_arabic, {}};
        int left = 0;
        for (const IndicNumber &number : numbers) {
            addPart(reading, left, number.box.left);
            reading.words.append({number.text, true, false, confidenceOf(number), number.box});
            left = number.box.right;
        }
        addPart(reading, left, m_task.image().picture.width);
        sortLogically(reading.words, true);
        return reading;
    }

private:
    /// The words between two numbers.
    void addPart(Reading &reading, int left, int right) const
    {
        const GreyImage &picture = m_task.image().picture;
        const Box ink =
            right - left < narrowestPart ? Box{} : inkIn(picture, {left, 0, right, picture.height});
        if (ink.width() < narrowestPart) {
            return;
        }
        QList<ReadWord> words;
        bool isCut = m_task.script != Script::Arabic;
        for (const ReadWord &word : m_task.best.words) {
            const double share = shareWithin(word, ink);
            if (share > 0.6) {
                words.append(word);
            }
            isCut = isCut || (share > 0.15 && share < 0.85);
        }
        if (!isCut && !words.isEmpty() && confidence(words) >= undisturbed) {
            reading.words += words;
            return;
        }
        const Reading again = m_task.readPart(m_engines, m_arabic, left, right);
        if (m_task.script == Script::Arabic) {
            reading.words += surerWords({m_arabic, words}, again);
        } else {
            words.removeIf([](const ReadWord &word) { return word.confidence < sureForeign; });
            reading.words += mergedReading(again, {m_task.best.model, words}, Script::Arabic).words;
        }
    }

    LineTask &m_task;
    const QString &m_arabic;
    EngineCache &m_engines;
};

} // namespace

bool hasIndicNumber(const LineTask &task)
{
    return task.script == Script::Arabic && hasUnmistakable(numbersOf(task));
}

Reading withIndicNumbers(LineTask &task, const QString &arabic, bool isExpected,
                         EngineCache &engines)
{
    const std::vector<IndicNumber> numbers = numbersOf(task);
    if (numbers.empty() || !(isExpected || hasUnmistakable(numbers))) {
        return task.best;
    }
    return NumberedLine(task, arabic, engines).readingWith(numbers);
}

} // namespace recognition
