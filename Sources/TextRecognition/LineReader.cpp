// SPDX-License-Identifier: MIT
#include "LineReader.h"

#include "Effort.h"
#include "FirstReadings.h"
#include "ForeignScript.h"
#include "HanChooser.h"
#include "IconFilter.h"
#include "LanguageChooser.h"
#include "MixedScripts.h"
#include "ScriptChooser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// A line whose surest words are below this may hold words of another script.
constexpr double mixedGate = 84;

/// Below this a Latin reading on a page with another script may be of that script, which then may
/// be this much less sure: it is not at its best beside Latin letters.
constexpr double doubtfulLatin = 75;
constexpr double foreignAdvance = 4;

bool isHanModel(const QString &model)
{
    return kindOf(Languages::scriptOf(model)) == WritingKind::Chinese;
}

bool isChinese(Script script)
{
    return script == Script::SimplifiedHan || script == Script::TraditionalHan;
}

/// Whether a word is in Arabic letters or digits. Where something else stands, the Arabic model is
/// rarely this sure of two of them in a word.
bool isSurelyFromRight(const ReadWord &word)
{
    constexpr double sure = 75;
    constexpr int fewest = 2;
    return word.confidence >= sure &&
           std::count_if(word.text.cbegin(), word.text.cend(), [](QChar c) {
               return c.direction() == QChar::DirAL || c.direction() == QChar::DirAN;
           }) >= fewest;
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
        , m_isFinished(tasks.size(), false)
    {
        for (const Script script : languages.scripts()) {
            m_models.candidates.append(languages.models(script).first());
            if (script != Script::Latin) {
                m_models.foreignCandidates.append(m_models.candidates.last());
            }
        }
        m_models.latin = languages.models(Script::Latin).value(0);
    }

    void run()
    {
        try {
            readAll();
        } catch (const Spent &) {
            for (std::size_t i = 0; i < m_tasks.size(); ++i) {
                m_tasks[i].takeWhatIsRead();
                finish(i);
            }
        }
    }

private:
    void readAll()
    {
        m_models.main = mainModel(lines(), m_models.candidates, m_engines, m_workers);
        if (Languages::scriptOf(m_models.main) == Script::Latin) {
            useLatin(latinModel(lines(), m_languages, m_engines, m_workers));
        } else if (isHanModel(m_models.main)) {
            chooseHan();
        }
        readFirst(m_tasks, m_models, m_languages, m_engines, m_workers);
        reconsiderMain();
        settleChinese();
        if (Languages::scriptOf(m_models.main) != Script::Latin) {
            chooseLatin();
        }
        m_workers.forEach(m_tasks.size(), [this](std::size_t i) {
            LineTask &task = m_tasks[i];
            if (task.script == Script::Latin) {
                checkLanguage(task);
            }
            checkMixed(task);
            finish(i);
        });
    }

    /// Once nothing of the line will be read any more.
    void finish(std::size_t line)
    {
        if (!m_isFinished[line]) {
            m_tasks[line].best = withoutIcons(m_tasks[line]);
            m_isFinished[line] = true;
        }
    }

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
        m_models.candidates.replaceInStrings(m_models.latin, model);
        if (m_models.main == m_models.latin) {
            m_models.main = model;
        }
        m_models.latin = model;
    }

    /// Chinese of one kind or Japanese for the whole page: on single words the models are about
    /// equally sure.
    void chooseHan()
    {
        QStringList models = m_models.candidates;
        models.removeIf([](const QString &model) { return !isHanModel(model); });
        m_models.main = hanModel(lines(), models, m_engines, m_workers);
        m_models.candidates.removeIf(
            [&](const QString &m) { return models.contains(m) && m != m_models.main; });
    }

    /// The first lines may have misled: if more of the page was read surely with another script's
    /// model, it is what the doubtful lines are in too.
    void reconsiderMain()
    {
        QMap<QString, int> sure;
        QMap<QString, int> taken;
        for (const LineTask &task : m_tasks) {
            taken[task.best.model] += task.best.characters();
            if (task.best.confidence() >= gateOf(task.script) &&
                (task.script == Script::Latin ||
                 2 * countLetters(task.best.text(), task.script).own >= task.best.characters())) {
                sure[task.script == Script::Latin ? m_models.latin : task.best.model] +=
                    task.best.characters();
            }
        }
        if (Languages::scriptOf(m_models.main) != Script::Latin) {
            m_models.foreign = m_models.main;
        }
        takeMost(sure);
        if (m_models.foreign.isEmpty()) {
            m_models.foreign =
                foreignModel(m_tasks, m_models.foreignCandidates, m_engines, m_workers);
        }
        if (m_models.foreign.isEmpty()) {
            takeMost(taken);
        }
        if (m_models.foreign.isEmpty()) {
            return;
        }
        const bool misled = sure.value(m_models.foreign) > sure.value(m_models.main);
        if (misled) {
            m_models.main = m_models.foreign;
        }
        forEachLine([this, misled](LineTask &task) {
            const bool isDoubtful =
                task.script == Script::Latin ? task.best.confidence() < doubtfulLatin : misled;
            if (!isDoubtful || task.best.model == m_models.foreign ||
                task.best.confidence() >= gateOf(task.script)) {
                return;
            }
            const Reading reading = task.read(m_engines, m_models.foreign);
            const LetterCount letters =
                countLetters(reading.text(), Languages::scriptOf(m_models.foreign));
            if (letters.own >= std::max(2, letters.latin) &&
                reading.confidence() > task.best.confidence() - foreignAdvance) {
                task.take(reading);
            }
        });
    }

    /// Takes for the page's other script the one with most characters.
    void takeMost(const QMap<QString, int> &characters)
    {
        for (const QString &model : std::as_const(m_models.foreignCandidates)) {
            if (characters.value(model) > characters.value(m_models.foreign)) {
                m_models.foreign = model;
            }
        }
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
        const QString first = lines.empty() ? m_models.foreign : lines.front()->best.model;
        if (isHanModel(m_models.main) || !isChinese(Languages::scriptOf(first))) {
            return;
        }
        const QString model = chineseModel(
            first, m_models.foreignCandidates,
            [&](const QString &simplified, const QString &traditional) {
                return simplifiedLead(lines, simplified, traditional, m_engines) +
                       simplifiedLeadOfParts(m_tasks, simplified, traditional, m_engines);
            });
        if (isChinese(Languages::scriptOf(m_models.foreign))) {
            m_models.foreign = model;
        }
        m_workers.forEach(lines.size(), [&](std::size_t i) {
            if (lines[i]->best.model != model) {
                lines[i]->take(lines[i]->read(m_engines, model));
            }
        });
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
        if (model == m_models.latin) {
            return;
        }
        useLatin(model);
        m_workers.forEach(lines.size(), [&](std::size_t i) {
            const Reading reading = lines[i]->read(m_engines, model);
            if (reading.confidence() + 1 > lines[i]->best.confidence()) {
                lines[i]->take(reading);
            }
        });
    }

    /// A line may be in another language than its page.
    void checkLanguage(LineTask &task)
    {
        const QString other = surelyOther(task.best.text(), m_models.latin, m_languages);
        if (!other.isEmpty()) {
            const Reading reading = task.read(m_engines, other);
            if (reading.confidence() + 1 > task.best.confidence()) {
                task.take(reading);
            }
        } else if (task.best.confidence() < 80 && m_engines.has(u"Latin"_s)) {
            const Reading reading = task.read(m_engines, u"Latin"_s);
            if (reading.confidence() > task.best.confidence() + 4) {
                task.take(reading);
            }
        }
    }

    /// Reads the doubtful part of a line again with a second script and keeps the surer words of
    /// each. The Arabic model reads Latin letters and digits of both kinds itself.
    void checkMixed(LineTask &task)
    {
        if (task.best.isEmpty() || task.script == Script::Arabic) {
            return;
        }
        const QString second = task.script == Script::Latin ? m_models.foreign : m_models.latin;
        if (second.isEmpty()) {
            return;
        }
        if (Languages::scriptOf(second) == Script::Arabic) {
            checkArabic(task, second);
        } else {
            task.best = mixedReading(task, second, mixedGate, m_engines);
        }
    }

    /// Reads a line whole with the Arabic model if it may hold Arabic: any line of an Arabic page,
    /// doubtful ones of others.
    void checkArabic(LineTask &task, const QString &model)
    {
        if (task.best.confidence() >= mixedGate && model != m_models.main) {
            return;
        }
        const Reading reading = task.read(m_engines, model);
        if (std::any_of(reading.words.cbegin(), reading.words.cend(), isSurelyFromRight)) {
            task.take(reading);
        }
    }

    std::vector<LineTask> &m_tasks;
    const Languages &m_languages;
    EngineCache &m_engines;
    Workers &m_workers;
    PageModels m_models;
    /// Bytes, as each line's is written by the thread that reads it.
    std::vector<char> m_isFinished;
};

} // namespace

void readLines(std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
               Workers &workers)
{
    Reader(tasks, languages, engines, workers).run();
}

} // namespace recognition
