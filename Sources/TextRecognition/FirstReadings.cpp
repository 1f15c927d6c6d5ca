// SPDX-License-Identifier: MIT
#include "FirstReadings.h"

#include "LanguageChooser.h"
#include "LineGroups.h"
#include "ScriptChooser.h"

#include <algorithm>
#include <map>

namespace recognition {

namespace {

/// Another script's model must be this sure of a part of a line, and of the whole.
constexpr double leastForeign = 72;
constexpr double leastWholeForeign = 60;

/// A line that looks less likely than this to be Latin is not asked for it.
constexpr double unlikelyLatin = 0.01;

/// Lines that are read at once: the more, the less often weights are fetched.
constexpr std::size_t linesAtOnce = 4;

/// Lines that the page's model is less sure of at first may be others'.
constexpr double leastMain = 60;

class FirstReader
{
public:
    FirstReader(std::vector<LineTask> &tasks, const PageModels &models, const Languages &languages,
                EngineCache &engines, Workers &workers)
        : m_tasks(tasks)
        , m_models(models)
        , m_languages(languages)
        , m_engines(engines)
        , m_workers(workers)
    {
    }

    void run()
    {
        readAhead();
        m_workers.forEach(m_tasks.size(), [this](std::size_t i) { readLine(m_tasks[i]); });
    }

private:
    /// The model of a line that looks like another script than the page's, and is so by a sample of
    /// it; empty if there is none.
    QString foreignLineModel(LineTask &task)
    {
        const Script script = Languages::scriptOf(m_models.main);
        const bool mayBeLatin = m_models.main != m_models.latin && !task.looksUnlike(Script::Latin);
        if (!task.looksUnlike(script) || mayBeLatin) {
            return {};
        }
        const Reading sample = scriptSample(task);
        return task.isHopeless(script, sample) ? otherModel(task, sample) : QString();
    }

    Reading scriptSample(LineTask &task)
    {
        return task.sample(m_engines, m_models.main, scriptSampleLength,
                           Languages::scriptOf(m_models.main) == Script::Arabic);
    }

    bool readForeignLine(LineTask &task)
    {
        const QString other = foreignLineModel(task);
        return !other.isEmpty() && takeSurer(task, other, scriptSample(task));
    }

    /// Reads a line of a Latin page that is surely in another language, without asking the page's
    /// model more than once.
    bool readOtherLanguage(LineTask &task)
    {
        if (m_models.main != m_models.latin) {
            return false;
        }
        const Reading first = task.readOnce(m_engines, m_models.main);
        const QString other = surelyOther(first.text(), m_models.latin, m_languages);
        if (other.isEmpty()) {
            return false;
        }
        const Reading reading = task.read(m_engines, other);
        if (reading.confidence() < std::max(sureConfidence, first.confidence())) {
            return false;
        }
        task.take(reading);
        return true;
    }

    /// Reads lines with the models that are likely to be theirs, several at a time: what each is
    /// read as is remembered, and the same as alone.
    void readAhead()
    {
        const Script script = Languages::scriptOf(m_models.main);
        std::map<QString, std::vector<LineTask *>> lines;
        for (LineTask &task : m_tasks) {
            if (!task.looksUnlike(script)) {
                lines[m_models.main].push_back(&task);
            }
        }
        // First, as they are what there is for sure if the others take all the time that is left.
        readGroups(lines);
        std::vector<QString> models(m_tasks.size());
        m_workers.forEach(m_tasks.size(),
                          [&](std::size_t i) { models[i] = foreignLineModel(m_tasks[i]); });
        std::map<QString, std::vector<LineTask *>> foreign;
        for (std::size_t i = 0; i < m_tasks.size(); ++i) {
            if (!models[i].isEmpty()) {
                foreign[models[i]].push_back(&m_tasks[i]);
            }
        }
        readGroups(foreign);
        lines.merge(foreign);
        std::erase_if(lines[m_models.main], [&](LineTask *task) {
            const Reading reading = task->readOnce(m_engines, m_models.main);
            const QString other = m_models.main == m_models.latin
                                      ? surelyOther(reading.text(), m_models.latin, m_languages)
                                      : QString();
            if (!other.isEmpty()) {
                lines[other].push_back(task);
            }
            return !other.isEmpty() || reading.confidence() < leastMain;
        });
        // Each is read twice more.
        LineGroups(lines, linesAtOnce / 2, m_workers).forEach([this](const auto &group) {
            LineTask::readOnce(group.tasks, m_engines, group.model);
            LineTask::read(group.tasks, m_engines, group.model);
        });
    }

    void readGroups(const std::map<QString, std::vector<LineTask *>> &lines)
    {
        LineGroups(lines, linesAtOnce, m_workers).forEach([this](const auto &group) {
            LineTask::readOnce(group.tasks, m_engines, group.model);
        });
    }

    void readLine(LineTask &task)
    {
        if (readForeignLine(task) || readOtherLanguage(task)) {
            return;
        }
        task.take(task.read(m_engines, m_models.main));
        if (task.best.confidence() >= gateOf(task.script) && !task.best.isEmpty()) {
            return;
        }
        if (!m_models.latin.isEmpty() && m_models.main != m_models.latin) {
            const bool native =
                10 * ownCharacters(task) >= 3 * task.best.characters() || hasSureWord(task);
            if (native && task.likelihood(Script::Latin) < unlikelyLatin) {
                return;
            }
            const Reading reading = task.read(m_engines, m_models.latin);
            if (reading.confidence() >= sureConfidence ||
                (!native && reading.confidence() > task.best.confidence() + 3)) {
                task.take(reading);
            }
            if (reading.confidence() >= sureConfidence || native) {
                return;
            }
        }
        const Reading own = task.best;
        const QString other = otherModel(task, own);
        if (!other.isEmpty()) {
            takeSurer(task, other, own);
        }
    }

    /// The model of another script that reads a sample more surely than `reading`, of the page's;
    /// empty if there is none.
    QString otherModel(LineTask &task, const Reading &reading)
    {
        QStringList others = m_models.candidates;
        others.removeAll(m_models.main);
        // By a few letters any model may chance to be sure of something.
        const int doubt = reading.characters() <= 8 ? 25 : 8;
        return otherScript(task, others, std::max(reading.confidence() + doubt, leastForeign),
                           m_engines);
    }

    /// Takes the reading of another script's `model` if it is surer than `own`, of the page's.
    bool takeSurer(LineTask &task, const QString &model, const Reading &own)
    {
        const Reading foreign = task.read(m_engines, model);
        if (foreign.confidence() < leastWholeForeign ||
            foreign.confidence() <= own.confidence() + 3) {
            return false;
        }
        task.take(foreign);
        return true;
    }

    /// Characters of words that the line's model is sure of and that are in its own script.
    static int ownCharacters(const LineTask &task)
    {
        int count = 0;
        for (const ReadWord &word : task.best.words) {
            if (word.confidence >= 70 && countLetters(word.text, task.script).own > 0) {
                count += int(word.text.size());
            }
        }
        return count;
    }

    /// Whether the line's model is so sure of a word of its own script that it is no chance.
    static bool hasSureWord(const LineTask &task)
    {
        constexpr double sureWord = 90;
        constexpr int longWord = 4;
        return std::any_of(task.best.words.cbegin(), task.best.words.cend(),
                           [&task](const ReadWord &word) {
                               return word.confidence >= sureWord &&
                                      countLetters(word.text, task.script).own >= longWord;
                           });
    }

    std::vector<LineTask> &m_tasks;
    const PageModels &m_models;
    const Languages &m_languages;
    EngineCache &m_engines;
    Workers &m_workers;
};

} // namespace

double gateOf(Script script)
{
    // The models of scripts with many characters are less sure of their own.
    return script == Script::Latin || script == Script::Cyrillic ? sureConfidence : 80;
}

void readFirst(std::vector<LineTask> &tasks, const PageModels &models, const Languages &languages,
               EngineCache &engines, Workers &workers)
{
    FirstReader(tasks, models, languages, engines, workers).run();
}

} // namespace recognition
