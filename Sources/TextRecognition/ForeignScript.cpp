// SPDX-License-Identifier: MIT
#include "ForeignScript.h"

#include "DoubtfulParts.h"
#include "HanChooser.h"
#include "Languages.h"
#include "ScriptChooser.h"

#include <algorithm>

namespace recognition {

namespace {

/// Latin words less sure than this may be of another script.
constexpr double doubtfulWord = 75;

/// The widest parts tell; a part narrower than a letter, in prepared pixels, tells nothing.
constexpr std::size_t mostSamples = 4;
constexpr int narrowest = preparedLetterHeight;

/// A kind of writing that the parts look less likely to be than this is not asked for.
constexpr double unlikely = 0.1;

/// How sure a model must be of the parts, and how much surer than the Latin one.
constexpr double leastForeign = 62;
constexpr double advantage = 8;

/// What the Japanese model's sureness of text without kana is worth, which is likelier Chinese.
constexpr double withoutKana = 0.7;

/// Fewer letters of its own may be chance.
int fewestLetters(Script script)
{
    return kindOf(script) == WritingKind::Chinese || script == Script::Korean ? 2 : 4;
}

/// Whether `c` is a part of a syllable or a stroke that a sign or an icon may be taken for.
bool isStroke(char32_t c)
{
    return (c >= 0x3131 && c <= 0x318e) || c == 0x30fc;
}

/// Letters of `script` in `reading`. Of Cyrillic, many of whose letters look like Latin ones, those
/// of listed words only.
int ownLetters(const Reading &reading, Script script)
{
    int letters = 0;
    for (const ReadWord &word : reading.words) {
        if (script == Script::Cyrillic && !word.isListed) {
            continue;
        }
        for (const char32_t c : word.text.toUcs4()) {
            letters += belongsTo(c, script) && !isStroke(c);
        }
    }
    return letters;
}

struct Sample
{
    LineTask *line = nullptr;
    LinePart part;
    /// How sure the Latin model is of it.
    double confidence = 0;
};

/// What the Latin model read of `line` within `part`.
Reading within(const LineTask &line, const LinePart &part)
{
    Reading reading{line.best.model, {}};
    for (const ReadWord &word : line.best.words) {
        if (word.box.centreX2() >= 2 * part.left && word.box.centreX2() < 2 * part.right) {
            reading.words.append(word);
        }
    }
    return reading;
}

std::vector<Sample> samplesOf(std::vector<LineTask> &tasks)
{
    std::vector<Sample> samples;
    for (LineTask &task : tasks) {
        if (task.script != Script::Latin) {
            continue;
        }
        for (const LinePart &part : doubtfulParts(task.best.words, {Script::Latin, Script::Latin},
                                                  task.image().picture, doubtfulWord)) {
            if (part.width() >= narrowest) {
                samples.push_back({&task, part, within(task, part).confidence()});
            }
        }
    }
    std::stable_sort(samples.begin(), samples.end(), [](const Sample &a, const Sample &b) {
        return a.part.width() > b.part.width();
    });
    samples.resize(std::min(samples.size(), mostSamples));
    return samples;
}

} // namespace

QString foreignModel(std::vector<LineTask> &tasks, const QStringList &candidates,
                     EngineCache &engines, const Workers &workers)
{
    const std::vector<Sample> samples = samplesOf(tasks);
    KindShares kinds{};
    double whole = 0;
    for (const Sample &sample : samples) {
        const double width = sample.part.width();
        const KindShares mine = sample.line->kindsOfPart(sample.part.left, sample.part.right);
        for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
            kinds[kind] += width * mine[kind];
        }
        whole += width;
    }
    QStringList models = candidates;
    models.removeIf([&](const QString &model) {
        return kinds[std::size_t(kindOf(Languages::scriptOf(model)))] < unlikely * whole;
    });
    std::vector<double> scores(std::size_t(models.size()), 0);
    workers.forEach(scores.size(), [&](std::size_t i) {
        const QString &model = models[qsizetype(i)];
        const Script script = Languages::scriptOf(model);
        int letters = 0;
        bool hasKana = false;
        for (const Sample &sample : samples) {
            const Reading reading =
                sample.line->readPart(engines, model, sample.part.left, sample.part.right);
            const double score = scriptScore(reading, script);
            if (score >= std::max(leastForeign, sample.confidence + advantage)) {
                letters += ownLetters(reading, script);
                hasKana = hasKana || kanaIn(reading.text()) > 0;
                scores[i] += sample.part.width() * score;
            }
        }
        if (letters < fewestLetters(script)) {
            scores[i] = 0;
        } else if (script == Script::Japanese && !hasKana) {
            scores[i] *= withoutKana;
        }
    });
    const auto best = std::max_element(scores.begin(), scores.end());
    return best == scores.end() || *best == 0 ? QString() : models[best - scores.begin()];
}

double simplifiedLeadOfParts(std::vector<LineTask> &tasks, const QString &simplified,
                             const QString &traditional, EngineCache &engines)
{
    double lead = 0;
    for (const Sample &sample : samplesOf(tasks)) {
        const auto reading = [&](const QString &model) {
            return sample.line->readPart(engines, model, sample.part.left, sample.part.right);
        };
        lead += simplifiedLead(reading(simplified), reading(traditional));
    }
    return lead;
}

} // namespace recognition
