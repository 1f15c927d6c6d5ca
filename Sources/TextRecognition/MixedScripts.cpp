// SPDX-License-Identifier: MIT
#include "MixedScripts.h"

#include "DoubtfulParts.h"
#include "Languages.h"
#include "WordChoice.h"

#include <algorithm>

namespace recognition {

namespace {

/// A part of a line that looks less likely than this to be of another script is not asked for it,
/// unless it is too short, in prepared pixels, to look like anything.
constexpr double unlikelyPart = 0.005;
constexpr int shortPart = 6 * preparedLetterHeight;

} // namespace

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
        changed = changed || takes[i];
        merged.words += takes[i] ? places[i].other : places[i].base;
    }
    if (!changed) {
        return base;
    }
    std::stable_sort(
        merged.words.begin(), merged.words.end(),
        [](const ReadWord &a, const ReadWord &b) { return a.box.centreX2() < b.box.centreX2(); });
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
    Reading other{second, {}};
    for (const LinePart &part : parts) {
        if (part.hasNumber || part.width() <= shortPart ||
            task.kindsOfPart(part.left, part.right)[kind] >= unlikelyPart) {
            other.words += task.readPart(engines, second, part.left, part.right).words;
        }
    }
    return mergedReading(task.best, other, task.script);
}

} // namespace recognition
