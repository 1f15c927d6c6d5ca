// SPDX-License-Identifier: MIT
#include "ScriptChooser.h"

#include "HanChooser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Lines that tell the script of a page, if the first does not.
constexpr std::size_t scriptLines = 3;

/// A kind of writing that looks more likely than this is read by all its models, and what looks
/// less likely only when none is as sure as `clearConfidence`.
constexpr double likely = 0.25;

/// A model is taken for a line it is this sure of if it leads by so much, and what all models stay
/// below on average may be of a kind that looked unlikely.
constexpr double clearConfidence = 70;
constexpr double clearLead = 20;
constexpr double poorConfidence = 65;

/// Whether a text holds letters that no Latin model would take for its own, or a word that is too
/// long to be listed by chance.
bool hasOwnShapes(const Reading &reading)
{
    static const QString alike = u"АВЕЗІКМНОРСТУХЬавеіорсухтмкнг"_s;
    constexpr int longWord = 6;
    return std::any_of(reading.words.cbegin(), reading.words.cend(), [](const ReadWord &word) {
        return (word.isListed && countLetters(word.text, Script::Cyrillic).own >= longWord) ||
               std::any_of(word.text.cbegin(), word.text.cend(),
                           [](QChar c) { return isCyrillic(c.unicode()) && !alike.contains(c); });
    });
}

double sampleScore(LineTask &task, const QString &model, EngineCache &engines)
{
    const Script script = Languages::scriptOf(model);
    const bool isHan = kindOf(script) == WritingKind::Chinese;
    return scriptScore(task.sample(engines, model, isHan ? hanSampleLength : scriptSampleLength,
                                   script == Script::Arabic),
                       script);
}

/// A model that may be the one of the page.
struct Candidate
{
    QString name;
    /// By the looks of the lines, 0 to 1.
    double likelihood = 0;
    /// The confidences so far.
    double sum = 0;

    /// How sure the model is of `line`.
    double read(LineTask &line, EngineCache &engines)
    {
        if (Languages::scriptOf(name) != Script::Latin) {
            const double score = sampleScore(line, name, engines);
            sum += score;
            return score;
        }
        const Reading reading = line.sample(engines, name, scriptSampleLength, false);
        const double score = reading.confidence();
        // Doubtful Latin is more common than any other doubtful script.
        sum += score + 4;
        return reading.characters() >= 3 ? score : std::min(score, sureConfidence - 1);
    }
};

/// The candidates, likeliest first by the looks of `lines`. Of those with Chinese characters the
/// Japanese comes first, as it knows the most; unless such are likely, it stands for all.
std::vector<Candidate> byLikelihood(const QStringList &models, const std::vector<LineTask *> &lines)
{
    KindShares shares{};
    double whole = 0;
    for (const LineTask *line : lines) {
        for (std::size_t kind = 0; kind < shares.size(); ++kind) {
            shares[kind] += line->length() * line->kinds()[kind];
        }
        whole += line->length();
    }
    std::vector<Candidate> candidates;
    Candidate *chinese = nullptr;
    candidates.reserve(std::size_t(models.size()));
    for (const QString &model : models) {
        const Script script = Languages::scriptOf(model);
        const auto kind = std::size_t(kindOf(script));
        Candidate &candidate =
            candidates.emplace_back(Candidate{model, shares[kind] / std::max(1e-9, whole), 0});
        if (kindOf(script) != WritingKind::Chinese) {
            continue;
        }
        if (chinese && script == Script::Japanese) {
            std::swap(chinese->name, candidate.name);
        }
        if (!chinese) {
            chinese = &candidate;
        } else if (candidate.likelihood < likely) {
            candidate.likelihood = 0;
        }
    }
    const auto isBefore = [](const Candidate &a, const Candidate &b) {
        if (a.likelihood != b.likelihood) {
            return a.likelihood > b.likelihood;
        }
        return Languages::scriptOf(a.name) == Script::Latin &&
               Languages::scriptOf(b.name) != Script::Latin;
    };
    std::stable_sort(candidates.begin(), candidates.end(), isBefore);
    return candidates;
}

} // namespace

double scriptScore(const Reading &reading, Script script)
{
    const LetterCount letters = countLetters(reading.text(), script);
    if (letters.own < std::max(1, letters.latin) || 3 * letters.own < letters.digits) {
        return 0;
    }
    if (script == Script::Cyrillic && !hasOwnShapes(reading)) {
        return 0;
    }
    const int few = letters.all() <= 3 ? 15 : letters.all() <= 6 ? 8 : 0;
    return reading.confidence() - few;
}

QString otherScript(LineTask &task, const QStringList &candidates, double least,
                    EngineCache &engines)
{
    QStringList models = candidates;
    models.removeIf([&task](const QString &model) {
        const Script script = Languages::scriptOf(model);
        return script == Script::Latin || task.looksUnlike(script);
    });
    std::stable_sort(models.begin(), models.end(), [&task](const QString &a, const QString &b) {
        return task.likelihood(Languages::scriptOf(a)) > task.likelihood(Languages::scriptOf(b));
    });
    QString best;
    double top = least;
    for (const QString &model : std::as_const(models)) {
        const double score = sampleScore(task, model, engines);
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
                  EngineCache &engines, Workers &workers)
{
    const std::vector<LineTask *> lines(
        tasks.begin(), tasks.begin() + std::ptrdiff_t(std::min(tasks.size(), scriptLines)));
    std::vector<Candidate> models = byLikelihood(candidates, lines);
    const auto firstUnlikely =
        std::find_if(models.begin() + 1, models.end(),
                     [](const Candidate &model) { return model.likelihood < unlikelyKind; });

    // A line may be no text, or hard to read: what is not sure is decided by several.
    for (LineTask *line : lines) {
        double top = 0;
        double next = 0;
        Candidate *best = nullptr;
        for (auto model = models.begin(); model != firstUnlikely; ++model) {
            if (top >= clearConfidence && model->likelihood < likely) {
                break;
            }
            const double score = model->read(*line, engines);
            if (score >= sureConfidence) {
                return model->name;
            }
            next = std::max(next, std::min(top, score));
            if (score > top) {
                top = score;
                best = &*model;
            }
        }
        if (best && top >= clearConfidence && top - next >= clearLead) {
            return best->name;
        }
    }
    const auto hasLess = [](const Candidate &a, const Candidate &b) {
        return a.sum < b.sum;
    };
    auto best = std::max_element(models.begin(), firstUnlikely, hasLess);
    if (best->sum < poorConfidence * double(lines.size()) && firstUnlikely != models.end()) {
        const auto count = std::size_t(models.end() - firstUnlikely);
        workers.forEach(count, [&](std::size_t i) {
            for (LineTask *line : lines) {
                (firstUnlikely + std::ptrdiff_t(i))->read(*line, engines);
            }
        });
        best = std::max_element(models.begin(), models.end(), hasLess);
    }
    return best->name;
}

} // namespace recognition
