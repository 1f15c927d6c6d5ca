// SPDX-License-Identifier: MIT
#include "ScriptChooser.h"

#include "LanguageGuess.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// How much of a line is looked at to tell the script, in letter heights.
constexpr int sampleLength = 12;

/// Lines that tell the script of a page, if the first does not.
constexpr std::size_t scriptLines = 3;

/// Letters that tell the language of a page, and the lines they are taken from at most.
constexpr int languageLetters = 60;
constexpr std::size_t languageLines = 3;

/// Lines, and letters of each, that tell Chinese from Japanese, and how much kana make it surer.
constexpr std::size_t hanLines = 4;
constexpr int hanSampleLength = 15;
constexpr double kanaBonus = 10;

/// A line counts against a model by no more than this, or one with foreign words would decide.
constexpr double mostHanDoubt = 10;

/// A language this many times likelier (as a power of two) than the next is taken for granted.
constexpr double clearBits = 8;

/// Whether a text has Cyrillic letters other than those that look like Latin ones.
bool hasOwnShapes(const QString &text)
{
    static const QString alike = u"АВЕЗІКМНОРСТУХЬавеіорсухтмкнг"_s;
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar c) { return isCyrillic(c.unicode()) && !alike.contains(c); });
}

/// How sure a model is of a sample of its own script, less what few letters may be by chance.
double scriptScore(const Reading &reading, Script script)
{
    const LetterCount letters = countLetters(reading.text(), script);
    if (letters.own < std::max(1, letters.latin) || 3 * letters.own < letters.digits) {
        return 0;
    }
    if (script == Script::Cyrillic && !hasOwnShapes(reading.text())) {
        return 0;
    }
    const int few = letters.all() <= 3 ? 15 : letters.all() <= 6 ? 8 : 0;
    return reading.confidence() - few;
}

QStringList withoutLatin(QStringList models)
{
    models.removeIf([](const QString &m) { return Languages::scriptOf(m) == Script::Latin; });
    return models;
}

double sampleScore(LineTask &task, const QString &model, EnginePool &pool)
{
    const Script script = Languages::scriptOf(model);
    return scriptScore(task.sample(pool, model, sampleLength, script == Script::Arabic), script);
}

/// Scores of the languages that have a model, likeliest first.
QList<LanguageScore> guessAmong(const QString &text, const QStringList &models)
{
    QList<LanguageScore> scores = guessLanguage(text);
    scores.removeIf([&models](const LanguageScore &s) { return !models.contains(s.model); });
    return scores;
}

QString textOf(const std::vector<LineTask *> &lines, const QString &model, EnginePool &pool,
               Workers &workers)
{
    workers.forEach(lines.size(), [&](std::size_t i) { lines[i]->read(pool, model); });
    QString text;
    for (LineTask *line : lines) {
        text += line->read(pool, model).text() + u' ';
    }
    return text;
}

} // namespace

QString otherScript(LineTask &task, const QStringList &candidates, double least, EnginePool &pool)
{
    QString best;
    double top = least;
    for (const QString &model : withoutLatin(candidates)) {
        const double score = sampleScore(task, model, pool);
        if (score > top) {
            top = score;
            best = model;
        }
        if (score >= 93) {
            break;
        }
    }
    return best;
}

QString mainModel(const std::vector<LineTask *> &tasks, const QStringList &candidates,
                  EnginePool &pool, Workers &workers)
{
    const QStringList others = withoutLatin(candidates);
    if (candidates.size() == 1) {
        return candidates.first();
    }
    QString latin;
    for (const QString &model : candidates) {
        if (Languages::scriptOf(model) == Script::Latin) {
            latin = model;
        }
    }
    // A line may be no text, or hard to read: what is not sure is decided by several.
    double latinSum = 0;
    std::vector<double> sums(std::size_t(others.size()), 0);
    const std::size_t lines = std::min(tasks.size(), scriptLines);
    for (std::size_t i = 0; i < lines; ++i) {
        if (!latin.isEmpty()) {
            const Reading reading = tasks[i]->sample(pool, latin, sampleLength, false);
            if (reading.confidence() >= sureConfidence && reading.characters() >= 3) {
                return latin;
            }
            latinSum += reading.confidence() + 4;
        }
        std::vector<double> scores(sums.size(), 0);
        workers.forEach(scores.size(), [&](std::size_t k) {
            scores[k] = sampleScore(*tasks[i], others[qsizetype(k)], pool);
        });
        for (std::size_t k = 0; k < sums.size(); ++k) {
            sums[k] += scores[k];
        }
        const auto best = std::max_element(scores.begin(), scores.end());
        if (best != scores.end() && *best >= sureConfidence) {
            return others[best - scores.begin()];
        }
    }
    const auto best = std::max_element(sums.begin(), sums.end());
    if (best != sums.end() && *best > latinSum) {
        return others[best - sums.begin()];
    }
    return latin.isEmpty() ? candidates.first() : latin;
}

QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &models, EnginePool &pool,
                 Workers &workers)
{
    const std::size_t lines = std::min(tasks.size(), hanLines);
    const auto count = std::size_t(models.size());
    std::vector<double> scores(lines * count, 0);
    workers.forEach(scores.size(), [&](std::size_t i) {
        const QString &model = models[qsizetype(i % count)];
        const Reading reading = tasks[i / count]->sample(pool, model, hanSampleLength, false);
        const QString text = reading.text();
        const auto kana =
            std::count_if(text.cbegin(), text.cend(), [](QChar c) { return isKana(c.unicode()); });
        // A Chinese model cannot read kana, and the Japanese one sees few in Chinese.
        const bool japanese = Languages::scriptOf(model) == Script::Japanese;
        const double bonus = japanese && 5 * kana > reading.characters() ? kanaBonus : 0;
        scores[i] = reading.confidence() + bonus;
    });
    std::vector<double> sums(count, 0);
    for (std::size_t line = 0; line < lines; ++line) {
        const auto first = scores.begin() + std::ptrdiff_t(line * count);
        const double best = *std::max_element(first, first + std::ptrdiff_t(count));
        const double weight = std::min(20.0, tasks[line]->length());
        for (std::size_t k = 0; k < count; ++k) {
            sums[k] -= weight * std::min(mostHanDoubt, best - scores[line * count + k]);
        }
    }
    return models[std::max_element(sums.begin(), sums.end()) - sums.begin()];
}

QString latinModel(const std::vector<LineTask *> &tasks, const Languages &languages,
                   EnginePool &pool, Workers &workers)
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
    QList<LanguageScore> scores = guessAmong(textOf(lines, first, pool, workers), models);
    if (scores.size() < 2) {
        return first;
    }
    if (scores[0].model == first && scores[0].bits - scores[1].bits >= clearBits) {
        return first;
    }
    // It loses the accents, which tell the others apart.
    if (pool.folder().has(u"Latin"_s)) {
        scores = guessAmong(textOf(lines, u"Latin"_s, pool, workers), models);
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
        double confidence = lines.front()->read(pool, score.model).confidence();
        confidence += score.bits - scores[0].bits + (score.model == first ? 1.5 : 0);
        if (confidence > top) {
            top = confidence;
            best = score.model;
        }
    }
    return best;
}

} // namespace recognition
