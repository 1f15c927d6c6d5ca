// SPDX-License-Identifier: MIT
#include "MixedScripts.h"

#include "DoubtfulParts.h"
#include "Languages.h"
#include "WordChoice.h"

#include <QRegularExpression>

#include <algorithm>

namespace recognition {

namespace {

/// Among Arabic a per cent sign is shown left of its number, and written after it.
QList<ReadWord> withSignsLast(QList<ReadWord> words)
{
    static const QRegularExpression signFirst(QStringLiteral("%(\\d[\\d.,]*)"));
    for (ReadWord &word : words) {
        word.text.replace(signFirst, QStringLiteral("\\1%"));
    }
    return words;
}

enum class Direction { LeftToRight, RightToLeft, None };

Direction directionOf(const ReadWord &word)
{
    for (const char32_t c : word.text.toUcs4()) {
        if ((isArabic(c) && QChar::isLetter(c)) || QChar::direction(c) == QChar::DirAN) {
            return Direction::RightToLeft;
        }
        if (QChar::isLetter(c)) {
            return Direction::LeftToRight;
        }
    }
    return Direction::None;
}

/// A part of a line that looks less likely than this to be of another script is not asked for it,
/// unless it is too short, in prepared pixels, to look like anything. Arabic looks so from a few
/// letters on.
constexpr double unlikelyPart = 0.005;
constexpr int shortPart = 6 * preparedLetterHeight;
constexpr int shortArabicPart = 2 * preparedLetterHeight;

/// Latin names in Arabic text are common, the reverse is not, so that a line with so many Latin
/// letters to one Arabic one is an Arabic line.
constexpr int latinPerArabic = 3;

} // namespace

void sortLogically(QList<ReadWord> &words, bool fromRight)
{
    const Direction against = fromRight ? Direction::LeftToRight : Direction::RightToLeft;
    std::stable_sort(words.begin(), words.end(), [fromRight](const ReadWord &a, const ReadWord &b) {
        return fromRight ? a.box.centreX2() > b.box.centreX2()
                         : a.box.centreX2() < b.box.centreX2();
    });
    for (auto first = words.begin(); first != words.end();) {
        // A run may begin and end with numbers, but only what holds a letter turns round.
        auto last = first;
        bool turns = false;
        while (last != words.end() && directionOf(*last) != (fromRight ? Direction::RightToLeft
                                                                       : Direction::LeftToRight)) {
            turns = turns || directionOf(*last) == against;
            ++last;
        }
        if (turns) {
            std::reverse(first, last);
        }
        first = last == first ? first + 1 : last;
    }
}

bool runsFromRight(const QString &text, Script script)
{
    const LetterCount letters = countLetters(text, Script::Arabic);
    return script == Script::Arabic || (script == Script::Latin && letters.own > 1 &&
                                        latinPerArabic * letters.own >= letters.latin);
}

Reading mergedReading(const Reading &base, const Reading &other, Script script)
{
    std::vector<Place> places = placesOf(base, other);
    std::sort(places.begin(), places.end(),
              [](const Place &a, const Place &b) { return a.box.left < b.box.left; });
    std::vector<bool> takes;
    takes.reserve(places.size());
    for (const Place &place : places) {
        takes.push_back(takesOther(place, script));
    }
    // Numbers and brackets go with the foreign word that they stand beside.
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool beside = (i > 0 && takes[i - 1]) || (i + 1 < places.size() && takes[i + 1]);
        takes[i] = takes[i] || (beside && takesBeside(places[i]));
    }
    Reading merged{base.model, {}};
    bool changed = false;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const QString percent = script == Script::Arabic ? percentage(places[i]) : QString();
        if (!percent.isEmpty()) {
            places[i].base.front().text = percent;
            places[i].base.front().confidence =
                std::max(places[i].base.front().confidence, places[i].other.front().confidence);
            takes[i] = false;
            changed = true;
        }
        if (takes[i] && script == Script::Arabic && isNumber(places[i].other)) {
            places[i].other = withSignsLast(places[i].other);
        }
        changed = changed || takes[i];
        merged.words += takes[i] ? places[i].other : places[i].base;
    }
    if (!changed) {
        return base;
    }
    sortLogically(merged.words, runsFromRight(merged.text(), script));
    return merged;
}

Reading mixedReading(LineTask &task, const QString &second, double sure, EngineCache &engines)
{
    const std::vector<LinePart> parts = doubtfulParts(
        task.best.words, {task.script, Languages::scriptOf(second)}, task.image().picture, sure);
    int doubtful = 0;
    for (const LinePart &part : parts) {
        doubtful += part.width();
    }
    if (doubtful == 0) {
        return task.best;
    }
    const auto kind = std::size_t(kindOf(Languages::scriptOf(second)));
    // What is most of the line is read better with the rest. The models of Cyrillic are sure of
    // Latin capitals that look like theirs, so that any part may be meant.
    if (task.script == Script::Cyrillic || 3 * doubtful >= 2 * task.image().picture.width) {
        return mergedReading(task.best, task.read(engines, second), task.script);
    }
    const int shortest = task.script == Script::Arabic ? shortArabicPart : shortPart;
    Reading other{second, {}};
    for (const LinePart &part : parts) {
        if (part.hasNumber || part.width() <= shortest ||
            task.kindsOfPart(part.left, part.right)[kind] >= unlikelyPart) {
            other.words += task.readPart(engines, second, part.left, part.right).words;
        }
    }
    return mergedReading(task.best, other, task.script);
}

} // namespace recognition
