// SPDX-License-Identifier: MIT
#include "MixedScripts.h"

#include "Languages.h"

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

/// A number must be read this surely to be taken from the other reading.
constexpr double leastNumber = 80;

/// Words of both readings that stand on the same place.
struct Place
{
    Box box;
    QList<ReadWord> base;
    QList<ReadWord> other;
};

bool standTogether(const Box &a, const Box &b)
{
    return 10 * horizontalOverlap(a, b) > 3 * std::min(a.width(), b.width());
}

std::vector<Place> placesOf(const Reading &base, const Reading &other)
{
    std::vector<Place> places;
    const auto add = [&places](const ReadWord &word, QList<ReadWord> Place::*list) {
        Place mine;
        mine.box = word.box;
        std::vector<Place> apart;
        for (Place &place : places) {
            if (!standTogether(place.box, mine.box)) {
                apart.push_back(std::move(place));
                continue;
            }
            mine.box.unite(place.box);
            mine.base.append(place.base);
            mine.other.append(place.other);
        }
        (mine.*list).append(word);
        apart.push_back(std::move(mine));
        places = std::move(apart);
    };
    for (const ReadWord &word : base.words) {
        add(word, &Place::base);
    }
    for (const ReadWord &word : other.words) {
        add(word, &Place::other);
    }
    return places;
}

double confidence(const QList<ReadWord> &words)
{
    return Reading{{}, words}.confidence();
}

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

/// Whether words are a number in European digits, or a date, with its marks. The models of Latin
/// script read those best; others see 9 in a 0 with a stroke, or more digits in a per cent sign.
bool isNumber(const QList<ReadWord> &words)
{
    bool hasDigit = false;
    for (const ReadWord &word : words) {
        for (const QChar c : word.text) {
            if (c.isLetter() || (c.isDigit() && c > u'9')) {
                return false;
            }
            hasDigit = hasDigit || c.isDigit();
        }
    }
    return hasDigit;
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
        if (isArabic(c) && QChar::isLetter(c)) {
            return Direction::RightToLeft;
        }
        if (QChar::isLetter(c)) {
            return Direction::LeftToRight;
        }
    }
    return Direction::None;
}

/// From places on the line to the order they are read in.
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

/// A part of a line that looks less likely than this to be of another script is not asked for it,
/// unless it is too short, in prepared pixels, to look like anything.
constexpr double unlikelyPart = 0.005;
constexpr int shortPart = 6 * preparedLetterHeight;

/// Columns of a prepared line.
struct Part
{
    int left = 0;
    int right = 0;
};

/// Whether another script's model is to be asked about a word though its own model is sure: about
/// Cyrillic ones that are in no list, and about numbers.
bool isWorthAsking(const ReadWord &word, Script script)
{
    if (script == Script::Cyrillic) {
        return !word.isListed && countLetters(word.text, script).all() > 1;
    }
    return script != Script::Latin && word.text.size() > 1 && isNumber({word});
}

/// From the first to the last word that the line's model is less than `sure` of, with half the
/// gaps to its neighbours.
Part doubtfulPart(const LineTask &task, double sure)
{
    Part doubtful{task.image().picture.width, 0};
    for (const ReadWord &word : task.best.words) {
        if (word.confidence < sure || isWorthAsking(word, task.script)) {
            doubtful.left = std::min(doubtful.left, word.box.left);
            doubtful.right = std::max(doubtful.right, word.box.right);
        }
    }
    if (doubtful.right <= doubtful.left) {
        return doubtful;
    }
    Part outer{0, task.image().picture.width};
    for (const ReadWord &word : task.best.words) {
        if (word.box.right <= doubtful.left) {
            outer.left = std::max(outer.left, (word.box.right + doubtful.left) / 2);
        } else if (word.box.left >= doubtful.right) {
            outer.right = std::min(outer.right, (word.box.left + doubtful.right) / 2);
        }
    }
    return outer;
}

} // namespace

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
    sortLogically(merged.words, script == Script::Arabic);
    return merged;
}

Reading mixedReading(LineTask &task, const QString &second, double sure, EngineCache &engines)
{
    const Part part = doubtfulPart(task, sure);
    if (part.right <= part.left) {
        return task.best;
    }
    if (part.right - part.left > shortPart) {
        const KindShares kinds = task.kindsOfPart(part.left, part.right);
        if (kinds[std::size_t(kindOf(Languages::scriptOf(second)))] < unlikelyPart) {
            return task.best;
        }
    }
    // What is most of the line is read better with the rest. The models of Cyrillic are sure of
    // Latin capitals that look like theirs, so that any part may be meant.
    const bool isWhole = task.script == Script::Cyrillic ||
                         3 * (part.right - part.left) >= 2 * task.image().picture.width;
    const Reading other = isWhole ? task.read(engines, second)
                                  : task.readPart(engines, second, part.left, part.right);
    return mergedReading(task.best, other, task.script);
}

} // namespace recognition
