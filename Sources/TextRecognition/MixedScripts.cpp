// SPDX-License-Identifier: MIT
#include "MixedScripts.h"

#include "DoubtfulParts.h"
#include "Languages.h"
#include "Places.h"

#include <QRegularExpression>

#include <algorithm>

namespace recognition {

namespace {

/// How much surer the other reading must be: a word of one's own script at 80 and the same
/// misread in the other at 83 is common, the reverse of a foreign word is not.
constexpr double advantage = 6;

/// Confidences that a foreign word must reach, and below which one's own is doubted.
constexpr double leastOther = 65;
constexpr double sureOther = 85;
constexpr double weakBase = 65;

/// A word in lists must be this sure to be taken against a surer one that is in none.
constexpr double sureListed = 75;

/// A Cyrillic word in no list must be so much surer than the Latin one it would replace.
constexpr double sureLead = 25;

/// A number must be read this surely to be taken from the other reading.
constexpr double leastNumber = 80;

bool hasLetters(const QList<ReadWord> &words)
{
    for (const ReadWord &word : words) {
        for (const char32_t c : word.text.toUcs4()) {
            if (QChar::isLetter(c)) {
                return true;
            }
        }
    }
    return false;
}

bool hasCyrillic(const QList<ReadWord> &words)
{
    return countLetters(Reading{{}, words}.text(), Script::Cyrillic).own > 0;
}

/// Whether words are capitals that look alike in Cyrillic and Latin script, with one more that a
/// model may have put in their place: GTK read as СТК, MMMM as ММММ.
bool isAlike(const QList<ReadWord> &words)
{
    static const QString alike = QStringLiteral("АВСЕНКМОРТХУИФ");
    int letters = 0;
    for (const ReadWord &word : words) {
        for (const QChar c : word.text) {
            if (c.isLetter() && !alike.contains(c)) {
                return false;
            }
            letters += c.isLetter();
        }
    }
    return letters >= 2;
}

/// Whether the words are in the other model's lists and not in the line's own: Home, read as Ноте
/// without doubt.
bool isListedAlone(const Place &place)
{
    const auto isListed = [](const ReadWord &word) {
        return word.isListed && word.text.size() > 1;
    };
    return std::none_of(place.base.cbegin(), place.base.cend(), isListed) &&
           std::all_of(place.other.cbegin(), place.other.cend(), isListed) &&
           confidence(place.other) >= sureListed;
}

/// Whether the other reading is right where the base reading, of a line in `script`, is not.
bool takesOther(const Place &place, Script script)
{
    if (place.base.isEmpty() || !hasLetters(place.other)) {
        return false;
    }
    const double other = confidence(place.other);
    const double base = confidence(place.base);
    if (other < leastOther) {
        return false;
    }
    if (script == Script::Latin && hasCyrillic(place.other)) {
        return !isAlike(place.other) && (isListedAlone(place) || other >= base + sureLead);
    }
    if (script == Script::Cyrillic && (isAlike(place.base) || isListedAlone(place))) {
        return true;
    }
    if (other < base + advantage) {
        return false;
    }
    // What holds letters of the line's own script is rarely all wrong, and of Chinese and
    // Japanese a word is as much as the model saw fit to put together.
    const LetterCount own = countLetters(Reading{{}, place.base}.text(), script);
    if (script == Script::Latin || 2 * own.own <= own.all()) {
        return true;
    }
    const bool writtenInWords =
        script == Script::Arabic || script == Script::Cyrillic || script == Script::Korean;
    return writtenInWords && (base < weakBase || other >= sureOther);
}

/// Whether the other reading of a number is to be believed: by a model of Latin script that is
/// hardly less sure.
bool takesNumber(const Place &place, Script script)
{
    return script != Script::Latin && isNumber(place.base) && isNumber(place.other) &&
           confidence(place.other) >= leastNumber &&
           confidence(place.other) + advantage > confidence(place.base);
}

/// Among Arabic a per cent sign is shown left of its number, and written after it.
QList<ReadWord> withSignsLast(QList<ReadWord> words)
{
    static const QRegularExpression signFirst(QStringLiteral("%(\\d[\\d.,]*)"));
    for (ReadWord &word : words) {
        word.text.replace(signFirst, QStringLiteral("\\1%"));
    }
    return words;
}

QString digitsOf(const QString &text)
{
    QString digits;
    for (const QChar c : text) {
        if (isDigit(c.unicode())) {
            digits += c;
        }
    }
    return digits;
}

/// The Arabic model reads a per cent sign before a number as two or three more digits. If the
/// other reading of the place has the sign, the number and the sign as they are written; else an
/// empty string.
QString percentage(const Place &place)
{
    if (place.base.size() != 1 || place.other.size() != 1 || hasLetters(place.base)) {
        return {};
    }
    const QString number = digitsOf(place.other.front().text);
    QString text = place.base.front().text;
    const QString misread = digitsOf(text);
    if (number.isEmpty() || !place.other.front().text.contains(u'%') || text.contains(u'%') ||
        misread.size() <= number.size() || !misread.endsWith(number) || !text.contains(misread)) {
        return {};
    }
    return text.replace(misread, number + u'%');
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
        takes.push_back(takesOther(place, script) || takesNumber(place, script));
    }
    // Numbers and brackets go with the foreign word that they stand beside.
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool beside = (i > 0 && takes[i - 1]) || (i + 1 < places.size() && takes[i + 1]);
        if (!takes[i] && beside && !hasLetters(places[i].base) && !places[i].other.isEmpty() &&
            confidence(places[i].other) + advantage > confidence(places[i].base)) {
            takes[i] = true;
        }
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
