// SPDX-License-Identifier: MIT
#include "WordChoice.h"

#include "CodeMarks.h"
#include "DoubtfulParts.h"

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

/// By how much, in points of confidence, a Cyrillic word in no list must be surer than the Latin
/// one that it would replace.
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
/// model may have put in their place (GTK read as СТК, MMMM as ММММ), or in no list and of small
/// letters that look alike (yyyy as уууу).
bool isAlike(const QList<ReadWord> &words)
{
    static const QString alike = QStringLiteral("АВСЕНКМОРТХУИФ");
    static const QString small = QStringLiteral("асеорху");
    int letters = 0;
    for (const ReadWord &word : words) {
        for (const QChar c : word.text) {
            if (c.isLetter() && !alike.contains(c) && (word.isListed || !small.contains(c))) {
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

/// Whether a word in letters stands where the model of a line in `script` read `place.base`.
bool takesWord(const Place &place, Script script)
{
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
    // A number would be one to a model of Latin script, which reads them best.
    if (script != Script::Latin && isNumber(place.base) && other >= leastNumber &&
        other + advantage > base) {
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
    const bool writtenInWords = script == Script::Cyrillic || script == Script::Korean;
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

/// Whether a mark of source code stands where the line's model read no surer letters. Models that
/// know little code take it for other marks.
bool takesMark(const Place &place)
{
    return place.other.size() == 1 && isMarkOfCode(place.other.front().text) &&
           (!hasLetters(place.base) || confidence(place.base) < weakBase);
}

} // namespace

bool takesOther(const Place &place, Script script)
{
    if (place.base.isEmpty()) {
        return false;
    }
    return hasLetters(place.other) ? takesWord(place, script)
                                   : takesNumber(place, script) || takesMark(place);
}

bool takesBeside(const Place &place)
{
    return !hasLetters(place.base) && !place.other.isEmpty() &&
           confidence(place.other) + advantage > confidence(place.base);
}

} // namespace recognition
