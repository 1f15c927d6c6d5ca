// SPDX-License-Identifier: MIT
#include "LanguageChooser.h"

#include "LanguageGuess.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Letters that tell the language of a page, and the lines they are taken from at most.
constexpr int languageLetters = 60;
constexpr std::size_t languageLines = 3;

/// A language this many times likelier (as a power of two) than the next is taken for granted; if
/// the English model read the text without its accents, this many times.
constexpr double clearBits = 8;
constexpr double clearBitsUnaccented = 14;

/// A line is taken for another language than its page's when that is so many times likelier.
constexpr double otherBits = 10;

/// Words in the word list that are read this surely, of so many letters together, are of its
/// language.
constexpr double sureWord = 90;
constexpr qsizetype fewestKnownLetters = 4;

/// Scores of the languages that have a model, likeliest first.
QList<LanguageScore> guessAmong(const QString &text, const QStringList &models)
{
    QList<LanguageScore> scores = guessLanguage(text);
    scores.removeIf([&models](const LanguageScore &s) { return !models.contains(s.model); });
    return scores;
}

/// Whether `model`, which has read `lines`, was sure of them all and knows every word.
bool isSurelyIn(const QString &model, const std::vector<LineTask *> &lines, EngineCache &engines)
{
    const auto engine = engines.engine(model, Dictionary::With);
    if (!engine) {
        return false;
    }
    qsizetype letters = 0;
    for (LineTask *line : lines) {
        const Reading reading = line->read(engines, model);
        for (const ReadWord &word : reading.words) {
            const auto isLetter = [](QChar c) {
                return c.isLetter();
            };
            if (word.confidence < sureWord ||
                (std::any_of(word.text.cbegin(), word.text.cend(), isLetter) &&
                 !engine->knows(word.text))) {
                return false;
            }
            letters += std::count_if(word.text.cbegin(), word.text.cend(), isLetter);
        }
    }
    return letters >= fewestKnownLetters;
}

QString textOf(const std::vector<LineTask *> &lines, const QString &model, EngineCache &engines,
               Workers &workers)
{
    workers.forEach(lines.size(), [&](std::size_t i) { lines[i]->read(engines, model); });
    QString text;
    for (LineTask *line : lines) {
        text += line->read(engines, model).text() + u' ';
    }
    return text;
}

} // namespace

QString latinModel(const std::vector<LineTask *> &tasks, const Languages &languages,
                   EngineCache &engines, Workers &workers)
{
    const QStringList models = languages.models(Script::Latin);
    QString first = models.first();
    if (models.size() == 1) {
        return first;
    }

    std::vector<LineTask *> lines;
    double length = 0;
    for (LineTask *task : tasks) {
        if (lines.size() == languageLines || length > languageLetters) {
            break;
        }
        lines.push_back(task);
        length += task->length();
    }
    // The first model's reading costs nothing if it turns out to be the right one.
    QList<LanguageScore> scores = guessAmong(textOf(lines, first, engines, workers), models);
    if (scores.size() < 2) {
        return first;
    }
    if (scores[0].model == first && scores[0].bits - scores[1].bits >= clearBits) {
        return first;
    }
    if (scores[0].bits - scores[1].bits >= clearBitsUnaccented) {
        return scores[0].model;
    }
    if (isSurelyIn(first, lines, engines)) {
        return first;
    }
    // It loses the accents, which tell the others apart.
    if (engines.has(u"Latin"_s)) {
        scores = guessAmong(textOf(lines, u"Latin"_s, engines, workers), models);
    }
    if (scores[0].bits - scores[1].bits >= clearBits) {
        return scores[0].model;
    }

    // Too little text to tell: let the likeliest read it.
    scores.removeIf(
        [top = scores[0].bits](const LanguageScore &s) { return s.bits <= top - clearBits; });
    scores = scores.mid(0, 3);
    if (!std::any_of(scores.cbegin(), scores.cend(),
                     [&first](const LanguageScore &s) { return s.model == first; })) {
        scores.append({first, scores.last().bits - 2});
    }
    QString best = first;
    double top = 0;
    for (const LanguageScore &score : std::as_const(scores)) {
        double confidence = lines.front()->read(engines, score.model).confidence();
        confidence += score.bits - scores[0].bits + (score.model == first ? 1.5 : 0);
        if (confidence > top) {
            top = confidence;
            best = score.model;
        }
    }
    return best;
}

QString surelyOther(const QString &text, const QString &model, const Languages &languages)
{
    const QList<LanguageScore> scores = guessAmong(text, languages.models(Script::Latin));
    if (scores.isEmpty() || scores[0].model == model) {
        return {};
    }
    const auto own = std::find_if(scores.cbegin(), scores.cend(),
                                  [&model](const LanguageScore &s) { return s.model == model; });
    const double bits = own == scores.cend() ? 0 : own->bits;
    return scores[0].bits - bits >= otherBits ? scores[0].model : QString();
}

} // namespace recognition
