// SPDX-License-Identifier: MIT
#include "ScriptChooser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// A model that reads with this confidence reads its own script; foreign writing stays below.
constexpr double sure = 88;

/// How much of a line is looked at to tell the script, in letter heights.
constexpr int sampleLength = 12;

class Reader
{
public:
    Reader(std::vector<LineTask> &tasks, const Languages &languages, EnginePool &pool,
           Workers &workers)
        : m_tasks(tasks)
        , m_languages(languages)
        , m_pool(pool)
        , m_workers(workers)
    {
        for (const Script script : languages.scripts())
            m_candidates.append(languages.models(script).first());
    }

    void run()
    {
        const QString main = mainModel(m_tasks.front());
        m_candidates.removeAll(main);
        m_candidates.prepend(main);
        m_workers.forEach(m_tasks.size(), [this](std::size_t i) { readLine(m_tasks[i]); });
    }

private:
    QString mainModel(LineTask &task)
    {
        if (m_candidates.size() == 1)
            return m_candidates.first();
        const QString latin = m_languages.models(Script::Latin).value(0);
        QString best;
        double top = 0;
        if (!latin.isEmpty()) {
            const Reading reading = task.sample(m_pool, latin, sampleLength, false);
            if (reading.confidence() >= sure && reading.characters() >= 3)
                return latin;
            best = latin;
            top = reading.confidence() + 4;
        }
        return bestOf(task, best, top);
    }

    /// The model of another script that reads a sample best, if better than `top`.
    QString bestOf(LineTask &task, QString best, double top)
    {
        for (const QString &model : std::as_const(m_candidates)) {
            const Script script = Languages::scriptOf(model);
            if (script == Script::Latin)
                continue;
            const Reading reading =
                task.sample(m_pool, model, sampleLength, script == Script::Arabic);
            const LetterCount letters = countLetters(reading.text(), script);
            const int few = letters.all() <= 3 ? 15 : letters.all() <= 6 ? 8 : 0;
            const double confidence = reading.confidence() - (best.isEmpty() ? 0 : few);
            if (letters.own >= std::max(1, letters.latin) && confidence > top) {
                top = confidence;
                best = model;
            }
        }
        return best;
    }

    void readLine(LineTask &task)
    {
        QString model = m_candidates.first();
        Reading reading = task.read(m_pool, model);
        if (reading.confidence() < (Languages::scriptOf(model) == Script::Latin ? sure : 80)) {
            const QString other = bestOf(task, {}, reading.confidence() + 8);
            if (!other.isEmpty() && other != model) {
                const Reading again = task.read(m_pool, other);
                if (again.confidence() > reading.confidence() + 3) {
                    reading = again;
                    model = other;
                }
            }
        }
        task.best = reading;
        task.script = Languages::scriptOf(model);
    }

    std::vector<LineTask> &m_tasks;
    const Languages &m_languages;
    EnginePool &m_pool;
    Workers &m_workers;
    /// One model per script, the page's own first.
    QStringList m_candidates;
};

} // namespace

void readLines(std::vector<LineTask> &tasks, const Languages &languages, EnginePool &pool,
               Workers &workers)
{
    Reader(tasks, languages, pool, workers).run();
}

} // namespace recognition
