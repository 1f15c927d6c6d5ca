// SPDX-License-Identifier: MIT
#include "LineReader.h"

#include "ForeignScript.h"
#include "HanChooser.h"
#include "IconFilter.h"
#include "IndicNumbers.h"
#include "LanguageChooser.h"
#include "LineGroups.h"
#include "MixedScripts.h"
#include "ScriptChooser.h"

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Below this a line may be in another script than its model's. The models of scripts with many
/// characters are less sure of their own.
double gateOf(Script script)
{
    return script == Script::Latin || script == Script::Cyrillic ? sureConfidence : 80;
}

/// A line whose surest words are below this may hold words of another script.
constexpr double mixedGate = 84;

/// Another script's model must be this sure of a part of a line, and of the whole.
constexpr double leastForeign = 72;
constexpr double leastWholeForeign = 60;

/// Below this a Latin reading on a page with another script may be of that script, which then may
/// be this much less sure: it is not at its best beside Latin letters.
constexpr double doubtfulLatin = 75;
constexpr double foreignAdvance = 4;

/// A line that looks less likely than this to be Latin is not asked for it.
constexpr double unlikelyLatin = 0.01;

/// Lines that are read at once: the more, the less often weights are fetched.
constexpr std::size_t linesAtOnce = 4;

/// Lines that the page's model is less sure of at first may be others'.
constexpr double leastMain = 60;

bool isHanModel(const QString &model)
{
    return kindOf(Languages::scriptOf(model)) == WritingKind::Chinese;
}

bool isChinese(Script script)
{
    return script == Script::SimplifiedHan || script == Script::TraditionalHan;
}

class Reader
{
public:
    Reader(std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
           Workers &workers)
        : m_tasks(tasks)
        , m_languages(languages)
        , m_engines(engines)
        , m_workers(workers)
    {
        for (const Script script : languages.scripts()) {
            m_candidates.append(languages.models(script).first());
            if (script != Script::Latin) {
                m_foreignModels.append(m_candidates.last());
            }
        }
        m_latin = languages.models(Script::Latin).value(0);
    }

    void run()
    {
        m_main = mainModel(lines(), m_candidates, m_engines, m_workers);
        if (Languages::scriptOf(m_main) == Script::Latin) {
            useLatin(latinModel(lines(), m_languages, m_engines, m_workers));
        } else if (isHanModel(m_main)) {
            chooseHan();
        }
        readAhead();
        forEachLine([this](LineTask &task) { readLine(task); });
        reconsiderMain();
        settleChinese();
        if (Languages::scriptOf(m_main) != Script::Latin) {
            chooseLatin();
        }
        m_hasIndicNumbers = std::any_of(m_tasks.begin(), m_tasks.end(), hasIndicNumber);
        forEachLine([this](LineTask &task) {
            if (task.script == Script::Latin) {
                checkLanguage(task);
            }
            checkMixed(task);
            task.best = withoutIcons(task);
        });
    }

private:
    template <typename Work>
    void forEachLine(Work work)
    {
        m_workers.forEach(m_tasks.size(), [&](std::size_t i) { work(m_tasks[i]); });
    }

    std::vector<LineTask *> lines()
    {
        std::vector<LineTask *> lines;
        for (LineTask &task : m_tasks) {
            lines.push_back(&task);
        }
        return lines;
    }

    void useLatin(const QString &model)
    {
        m_candidates.replaceInStrings(m_latin, model);
        if (m_main == m_latin) {
            m_main = model;
        }
        m_latin = model;
    }

    /// Chinese of one kind or Japanese for the whole page: on single words the models are about
    /// equally sure.
    void chooseHan()
    {
        QStringList models = m_candidates;
        models.removeIf([](const QString &model) { return !isHanModel(model); });
        m_main = hanModel(lines(), models, m_engines, m_workers);
        m_candidates.removeIf([&](const QString &m) { return models.contains(m) && m != m_main; });
    }

    /// The model of a line that looks like another script than the page's, and is so by a sample of
    /// it; empty if there is none.
    QString foreignLineModel(LineTask &task)
    {
        const Script script = Languages::scriptOf(m_main);
        const bool mayBeLatin = m_main != m_latin && !task.looksUnlike(Script::Latin);
        if (!task.looksUnlike(script) || mayBeLatin) {
            return {};
        }
        const Reading sample = scriptSample(task);
        return task.isHopeless(script, sample) ? otherModel(task, sample) : QString();
    }

    Reading scriptSample(LineTask &task)
    {
        return task.sample(m_engines, m_main, scriptSampleLength,
                           Languages::scriptOf(m_main) == Script::Arabic);
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
        if (m_main != m_latin) {
            return false;
        }
        const Reading first = task.readOnce(m_engines, m_main);
        const QString other = surelyOther(first.text(), m_latin, m_languages);
        if (other.isEmpty()) {
            return false;
        }
        const Reading reading = task.read(m_engines, other);
        if (reading.confidence() < std::max(sureConfidence, first.confidence())) {
            return false;
        }
        take(task, reading);
        return true;
    }

    /// Reads lines with the models that are likely to be theirs, several at a time: what each is
    /// read as is remembered, and the same as alone.
    void readAhead()
    {
        std::vector<QString> models(m_tasks.size());
        m_workers.forEach(m_tasks.size(),
                          [&](std::size_t i) { models[i] = foreignLineModel(m_tasks[i]); });
        const Script script = Languages::scriptOf(m_main);
        std::map<QString, std::vector<LineTask *>> lines;
        for (std::size_t i = 0; i < m_tasks.size(); ++i) {
            if (!models[i].isEmpty()) {
                lines[models[i]].push_back(&m_tasks[i]);
            } else if (!m_tasks[i].looksUnlike(script)) {
                lines[m_main].push_back(&m_tasks[i]);
            }
        }
        LineGroups(lines, linesAtOnce, m_workers).forEach([this](const auto &group) {
            LineTask::readOnce(group.tasks, m_engines, group.model);
        });
        std::erase_if(lines[m_main], [&](LineTask *task) {
            const Reading reading = task->readOnce(m_engines, m_main);
            const QString other =
                m_main == m_latin ? surelyOther(reading.text(), m_latin, m_languages) : QString();
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

    void readLine(LineTask &task)
    {
        if (readForeignLine(task) || readOtherLanguage(task)) {
            return;
        }
        take(task, task.read(m_engines, m_main));
        if (task.best.confidence() >= gateOf(task.script) && !task.best.isEmpty()) {
            return;
        }
        if (!m_latin.isEmpty() && m_main != m_latin) {
            const bool native =
                10 * ownCharacters(task) >= 3 * task.best.characters() || hasSureWord(task);
            if (native && task.likelihood(Script::Latin) < unlikelyLatin) {
                return;
            }
            const Reading reading = task.read(m_engines, m_latin);
            if (reading.confidence() >= sureConfidence ||
                (!native && reading.confidence() > task.best.confidence() + 3)) {
                take(task, reading);
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
        QStringList others = m_candidates;
        others.removeAll(m_main);
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
        take(task, foreign);
        return true;
    }

    /// The first lines may have misled: if more of the page was read surely with another script's
    /// model, it is what the doubtful lines are in too.
    void reconsiderMain()
    {
        QMap<QString, int> sure;
        for (const LineTask &task : m_tasks) {
            if (task.best.confidence() >= gateOf(task.script) &&
                (task.script == Script::Latin ||
                 2 * countLetters(task.best.text(), task.script).own >= task.best.characters())) {
                sure[task.script == Script::Latin ? m_latin : task.best.model] +=
                    task.best.characters();
            }
        }
        if (Languages::scriptOf(m_main) != Script::Latin) {
            m_foreign = m_main;
        }
        for (const QString &model : std::as_const(m_foreignModels)) {
            if (sure.value(model) > sure.value(m_foreign)) {
                m_foreign = model;
            }
        }
        if (m_foreign.isEmpty()) {
            m_foreign = foreignModel(m_tasks, m_foreignModels, m_engines, m_workers);
        }
        if (m_foreign.isEmpty()) {
            return;
        }
        const bool misled = sure.value(m_foreign) > sure.value(m_main);
        if (misled) {
            m_main = m_foreign;
        }
        forEachLine([this, misled](LineTask &task) {
            const bool isDoubtful =
                task.script == Script::Latin ? task.best.confidence() < doubtfulLatin : misled;
            if (!isDoubtful || task.best.model == m_foreign ||
                task.best.confidence() >= gateOf(task.script)) {
                return;
            }
            const Reading reading = task.read(m_engines, m_foreign);
            const LetterCount letters =
                countLetters(reading.text(), Languages::scriptOf(m_foreign));
            if (letters.own >= std::max(2, letters.latin) &&
                reading.confidence() > task.best.confidence() - foreignAdvance) {
                take(task, reading);
            }
        });
    }

    /// Lines between those of another script were each given the model that was surest of them: the
    /// Chinese ones and the parts in Chinese get that of one form all.
    void settleChinese()
    {
        std::vector<LineTask *> lines;
        for (LineTask &task : m_tasks) {
            if (isChinese(task.script)) {
                lines.push_back(&task);
            }
        }
        const QString first = lines.empty() ? m_foreign : lines.front()->best.model;
        if (isHanModel(m_main) || !isChinese(Languages::scriptOf(first))) {
            return;
        }
        const QString model = chineseModel(
            first, m_foreignModels, [&](const QString &simplified, const QString &traditional) {
                return simplifiedLead(lines, simplified, traditional, m_engines) +
                       simplifiedLeadOfParts(m_tasks, simplified, traditional, m_engines);
            });
        if (isChinese(Languages::scriptOf(m_foreign))) {
            m_foreign = model;
        }
        m_workers.forEach(lines.size(), [&](std::size_t i) {
            if (lines[i]->best.model != model) {
                take(*lines[i], lines[i]->read(m_engines, model));
            }
        });
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

    void take(LineTask &task, const Reading &reading)
    {
        task.best = reading;
        task.script = Languages::scriptOf(reading.model);
    }

    /// The language of the Latin lines of a page in another script.
    void chooseLatin()
    {
        std::vector<LineTask *> lines;
        for (LineTask &task : m_tasks) {
            if (task.script == Script::Latin) {
                lines.push_back(&task);
            }
        }
        if (lines.empty()) {
            return;
        }
        const QString model = latinModel(lines, m_languages, m_engines, m_workers);
        if (model == m_latin) {
            return;
        }
        useLatin(model);
        m_workers.forEach(lines.size(), [&](std::size_t i) {
            const Reading reading = lines[i]->read(m_engines, model);
            if (reading.confidence() + 1 > lines[i]->best.confidence()) {
                take(*lines[i], reading);
            }
        });
    }

    /// A line may be in another language than its page.
    void checkLanguage(LineTask &task)
    {
        const QString other = surelyOther(task.best.text(), m_latin, m_languages);
        if (!other.isEmpty()) {
            const Reading reading = task.read(m_engines, other);
            if (reading.confidence() + 1 > task.best.confidence()) {
                take(task, reading);
            }
        } else if (task.best.confidence() < 80 && m_engines.folder().has(u"Latin"_s)) {
            const Reading reading = task.read(m_engines, u"Latin"_s);
            if (reading.confidence() > task.best.confidence() + 4) {
                take(task, reading);
            }
        }
    }

    /// Reads the doubtful part of a line again with a second script and keeps the surer words of
    /// each.
    void checkMixed(LineTask &task)
    {
        if (task.best.isEmpty()) {
            return;
        }
        checkNumbers(task);
        QString second = m_latin;
        if (task.script == Script::Latin) {
            second = m_foreign;
        }
        if (second.isEmpty()) {
            return;
        }
        if (task.script == Script::Latin && second == m_main &&
            Languages::scriptOf(second) == Script::Arabic) {
            task.best = mergedReading(task.best, task.read(m_engines, second), task.script);
        }
        task.best = mixedReading(task, second, mixedGate, m_engines);
        if (runsFromRight(task.best.text(), task.script)) {
            task.script = Script::Arabic;
        }
    }

    /// Puts Arabic-Indic numbers into lines that are Arabic, or stand on an Arabic page.
    void checkNumbers(LineTask &task)
    {
        for (const QString &model : {task.best.model, m_main}) {
            if (!model.isEmpty() && Languages::scriptOf(model) == Script::Arabic) {
                take(task, withIndicNumbers(task, model, m_hasIndicNumbers, m_engines));
                return;
            }
        }
    }

    std::vector<LineTask> &m_tasks;
    const Languages &m_languages;
    EngineCache &m_engines;
    Workers &m_workers;
    /// One model per script.
    QStringList m_candidates;
    /// Those of other scripts than Latin.
    QStringList m_foreignModels;
    /// What most of the page is in.
    QString m_main;
    /// The language of Latin script that is on the page.
    QString m_latin;
    /// The model of another script that is on the page too, if there is one.
    QString m_foreign;
    /// Whether numbers on the page are surely in Arabic-Indic digits.
    bool m_hasIndicNumbers = false;
};

} // namespace

void readLines(std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
               Workers &workers)
{
    Reader(tasks, languages, engines, workers).run();
}

} // namespace recognition
