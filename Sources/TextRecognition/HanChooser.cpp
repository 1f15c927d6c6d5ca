// SPDX-License-Identifier: MIT
#include "HanChooser.h"

#include "ChineseGuess.h"
#include "Places.h"

#include <algorithm>

namespace recognition {

namespace {

/// One kana among so many characters makes a page Japanese, if it has at least a few.
constexpr qsizetype charactersPerKana = 5;
constexpr int fewestKana = 3;

/// Words are counted from this confidence of the Japanese model.
constexpr double sureJapanese = 70;

/// How much kana make Japanese surer.
constexpr double kanaBonus = 10;

/// A line counts against a model by no more than this, or one with foreign words would decide.
constexpr double mostHanDoubt = 10;

/// A place counts by no more than this for either form: a word of several characters is only as
/// sure as the least sure of them, which may be one that both read alike.
constexpr double mostFormLead = 20;

/// Lines that tell the models of Chinese characters apart.
constexpr std::size_t hanLines = 8;

/// By less than this in all, neither form leads.
constexpr double clearFormLead = 3;

/// What a bit of familiarity counts beside a per cent of confidence.
constexpr double bitWeight = 2;

bool hasHan(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return isHan(c.unicode()); });
}

/// Whether the Japanese model is sure of so many kana that the lines cannot be Chinese.
bool isJapanese(const std::vector<LineTask *> &tasks, std::size_t lines, const QString &model,
                EngineCache &engines, Workers &workers)
{
    std::vector<Reading> readings(lines);
    workers.forEach(lines, [&](std::size_t i) {
        readings[i] = tasks[i]->sample(engines, model, hanSampleLength, false);
    });
    int kana = 0;
    qsizetype characters = 0;
    for (const Reading &reading : readings) {
        for (const ReadWord &word : reading.words) {
            if (word.confidence >= sureJapanese) {
                kana += kanaIn(word.text);
                characters += word.text.size();
            }
        }
    }
    return kana >= fewestKana && charactersPerKana * kana >= characters;
}

QString modelOf(Script script, const QStringList &models)
{
    for (const QString &model : models) {
        if (Languages::scriptOf(model) == script) {
            return model;
        }
    }
    return {};
}

} // namespace

int kanaIn(const QString &text)
{
    return int(std::count_if(text.cbegin(), text.cend(),
                             [](QChar c) { return isKana(c.unicode()) && c.isLetter(); }));
}

double simplifiedLead(const Reading &simplified, const Reading &traditional)
{
    double lead = bitWeight * (familiarity(simplified.text(), Script::SimplifiedHan) -
                               familiarity(traditional.text(), Script::TraditionalHan));
    // Where both models read the same, neither says anything of which form is written.
    for (const Place &place : placesOf(simplified, traditional)) {
        const QString a = Reading{{}, place.base}.text();
        const QString b = Reading{{}, place.other}.text();
        if (a != b && hasHan(a) && hasHan(b)) {
            lead += std::clamp(confidence(place.base) - confidence(place.other), -mostFormLead,
                               mostFormLead);
        }
    }
    return lead;
}

QString chineseModel(const QString &best, const QStringList &models, const FormLead &lead)
{
    const QString simplified = modelOf(Script::SimplifiedHan, models);
    const QString traditional = modelOf(Script::TraditionalHan, models);
    if (simplified.isEmpty() || traditional.isEmpty() ||
        (best != simplified && best != traditional)) {
        return best;
    }
    const double by = lead(simplified, traditional);
    return std::abs(by) < clearFormLead ? best : by > 0 ? simplified : traditional;
}

double simplifiedLead(const std::vector<LineTask *> &lines, const QString &simplified,
                      const QString &traditional, EngineCache &engines)
{
    double lead = 0;
    for (std::size_t line = 0; line < std::min(lines.size(), hanLines); ++line) {
        LineTask &task = *lines[line];
        const auto reading = [&](const QString &model) {
            return task.length() <= hanSampleLength
                       ? task.read(engines, model)
                       : task.sample(engines, model, hanSampleLength, false);
        };
        lead += simplifiedLead(reading(simplified), reading(traditional));
    }
    return lead;
}

QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &models,
                 EngineCache &engines, Workers &workers)
{
    const std::size_t lines = std::min(tasks.size(), hanLines);
    for (const QString &model : models) {
        if (Languages::scriptOf(model) == Script::Japanese && models.size() > 1 &&
            isJapanese(tasks, lines, model, engines, workers)) {
            return model;
        }
    }
    const auto count = std::size_t(models.size());
    std::vector<double> scores(lines * count, 0);
    // Model by model: a copy of each is enough, and they are big.
    workers.forEach(count, [&](std::size_t k) {
        const QString &model = models[qsizetype(k)];
        for (std::size_t line = 0; line < lines; ++line) {
            const Reading reading = tasks[line]->sample(engines, model, hanSampleLength, false);
            const int kana = kanaIn(reading.text());
            // A Chinese model cannot read kana, and the Japanese one sees few in Chinese.
            const bool japanese = Languages::scriptOf(model) == Script::Japanese;
            const double bonus =
                japanese && charactersPerKana * kana > reading.characters() ? kanaBonus : 0;
            scores[line * count + k] = reading.confidence() + bonus;
        }
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
    const QString &best = models[std::max_element(sums.begin(), sums.end()) - sums.begin()];
    return chineseModel(best, models, [&](const QString &simplified, const QString &traditional) {
        return simplifiedLead(tasks, simplified, traditional, engines);
    });
}

} // namespace recognition
