// SPDX-License-Identifier: MIT
#include "NoiseFilter.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace recognition {

namespace {

struct Evidence
{
    /// Characters of lines read with confidence.
    int goodCharacters = 0;
    int goodLines = 0;
    int lines = 0;
    /// Braces that lines with more than them open.
    int openBraces = 0;
};

bool isBrace(const LineTask &task)
{
    return task.best.words.size() == 1 && task.best.words.front().text == u'}';
}

Evidence evidenceOf(const std::vector<LineTask> &tasks)
{
    Evidence evidence;
    for (const LineTask &task : tasks) {
        const LetterCount letters = countLetters(task.best.text(), task.script);
        const double confidence = task.best.confidence();
        if (confidence > 80) {
            evidence.goodCharacters += task.best.characters();
        }
        if (confidence >= 72 && letters.all() >= 2) {
            ++evidence.goodLines;
        }
        ++evidence.lines;
        if (!isBrace(task)) {
            evidence.openBraces += int(task.best.text().count(u'{') - task.best.text().count(u'}'));
        }
    }
    return evidence;
}

/// Whether a letter is a sound: of others a few say as much as a line of these.
bool writesWithAlphabet(Script script)
{
    return script == Script::Latin || script == Script::Cyrillic || script == Script::Arabic;
}

/// Whether a line of Chinese, Japanese or Korean holds two characters read surely: among thousands
/// that is no chance.
bool hasSureCharacters(const LineTask &task)
{
    constexpr double sure = 85;
    int count = 0;
    for (const ReadWord &word : task.best.words) {
        count += word.confidence >= sure ? countLetters(word.text, task.script).own : 0;
    }
    return !writesWithAlphabet(task.script) && count >= 2 && 2 * count >= task.best.characters();
}

/// The confidence below which a line is taken for noise. The shorter the line and the less text
/// around it, the surer the model has to be.
double leastConfidence(const LineTask &task, const Evidence &page)
{
    const int letters = countLetters(task.best.text(), task.script).all();
    const int characters = task.best.characters();
    if (letters == 0) {
        return 80;
    }
    // An icon set apart from its label is one mark, about twice as wide as high. Two or three
    // letters of Chinese, Japanese or Korean are as well.
    const Box &box = task.line().box;
    const bool isAlphabetic = writesWithAlphabet(task.script);
    if (isAlphabetic && characters <= 3 && task.line().marks.size() == 1 &&
        10 * box.width() >= 13 * box.height() && box.width() <= 3 * box.height()) {
        return 85;
    }
    // A few letters of these are a whole line, and the models are less sure of them.
    if (!isAlphabetic && 10 * countLetters(task.best.text(), task.script).own >= 6 * characters &&
        page.goodCharacters > 8) {
        return characters <= 2 ? 45 : 35;
    }
    if (hasSureCharacters(task)) {
        return 0;
    }
    if (characters <= 2) {
        return page.goodCharacters > 8 ? 60 : 80;
    }
    // A row of icons may be read as a few more; most do not look like text of the script that they
    // are read in.
    constexpr double unlikely = 0.01;
    constexpr int mostIcons = 6;
    if (characters <= 4 || (characters <= mostIcons && page.goodCharacters <= 8 &&
                            task.likelihood(task.script) < unlikely)) {
        return page.goodCharacters > 8 ? 50 : 72;
    }
    // So much in two tones alone is drawn as type without anti-aliasing is, which is hard to read.
    if (characters >= 8 && letters >= 5 && (page.goodCharacters > 8 || task.image().isBilevel)) {
        return 15;
    }
    return 50;
}

bool isNoise(const LineTask &task, const Evidence &page)
{
    const double confidence = task.best.confidence();
    if (task.best.isEmpty() || confidence < leastConfidence(task, page)) {
        return true;
    }
    if (isBrace(task) && page.openBraces > 0) {
        return false;
    }
    const int letters = countLetters(task.best.text(), task.script).all();
    if (letters <= 1 && !(page.lines <= 2 && confidence >= 85 && letters > 0) &&
        page.goodLines * 10 < page.lines * 6) {
        return true;
    }
    // Among many things that were not read, what was is likely chance.
    if (hasSureCharacters(task) || page.lines < 5 || page.goodLines * 10 >= page.lines * 3) {
        return false;
    }
    const double sure = writesWithAlphabet(task.script) ? 90 : 80;
    return (task.best.characters() < 6 && !(confidence > sure && letters >= 3)) ||
           (task.best.characters() < 12 && confidence < 70);
}

/// What of a line stands at an edge of the page if that cuts small letters, compared with an
/// average row of it: of tall letters alone, and of tails, there is less.
constexpr double leastCut = 0.7;

/// Letters that only touch the edge are read as surely as others.
constexpr double sureThoughCut = 75;

/// What stands as high as two thirds of the next line is not cut by more than a third.
bool isLower(const TextLine &line, const std::vector<LineTask> &tasks)
{
    const TextLine *next = nullptr;
    for (const LineTask &task : tasks) {
        const auto apart = [&line](const TextLine &other) {
            return std::abs(other.box.centreY2() - line.box.centreY2());
        };
        if (&task.line() != &line && horizontalOverlap(task.line().box, line.box) > 0 &&
            (!next || apart(task.line()) < apart(*next))) {
            next = &task.line();
        }
    }
    return next && 3 * line.letterHeight < 2 * next->letterHeight;
}

bool isCut(const LineTask &task, int pageHeight)
{
    double atEdge = 0;
    double average = 0;
    for (const Mark &mark : task.line().marks) {
        if (mark.rows.empty()) {
            continue;
        }
        average +=
            std::accumulate(mark.rows.begin(), mark.rows.end(), 0.0) / double(mark.rows.size());
        if (mark.box.top <= 0) {
            atEdge += mark.rows.front();
        } else if (mark.box.bottom >= pageHeight) {
            atEdge += mark.rows.back();
        }
    }
    return atEdge >= leastCut * average;
}

} // namespace

void dropCutLines(std::vector<LineTask> &tasks, int pageHeight)
{
    std::vector<bool> isKept;
    for (const LineTask &task : tasks) {
        isKept.push_back(!isCut(task, pageHeight) ||
                         (task.best.confidence() >= sureThoughCut && !isLower(task.line(), tasks)));
    }
    std::vector<LineTask> kept;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        if (isKept[i]) {
            kept.push_back(std::move(tasks[i]));
        }
    }
    tasks = std::move(kept);
}

void dropNoise(std::vector<LineTask> &tasks)
{
    const Evidence page = evidenceOf(tasks);
    std::erase_if(tasks, [&page](const LineTask &task) { return isNoise(task, page); });
}

void dropScenery(std::vector<LineTask> &tasks, const std::vector<Box> &rows)
{
    constexpr int shortest = 5;
    constexpr double leastSure = 85;
    if (rows.empty()) {
        return;
    }
    std::erase_if(tasks, [&rows](const LineTask &task) {
        const Box &box = task.line().box;
        const bool inRow = std::any_of(rows.begin(), rows.end(),
                                       [&box](const Box &row) { return row.contains(box); });
        return !inRow && (task.best.characters() < shortest || task.best.confidence() < leastSure);
    });
}

} // namespace recognition
