// SPDX-License-Identifier: MIT
// Lines that are read together: how they are grouped, and that they are read as alone.

#include "DrawnLine.h"
#include "TextRecognition/LanguageChooser.h"
#include "TextRecognition/LineGroups.h"

#include <QTest>

#include <atomic>
#include <set>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// A line of a page of its own.
LineTask taskOf(const QString &text)
{
    const GreyImage page = drawnLine(text, u"DejaVu Sans"_s);
    return {page, lineOf(findMarks(page))};
}

std::vector<LineTask> tasksOf(int count, const QString &text)
{
    std::vector<LineTask> tasks;
    for (int i = 0; i < count; ++i) {
        tasks.push_back(taskOf(text));
    }
    return tasks;
}

std::vector<LineTask *> pointersTo(std::vector<LineTask> &tasks)
{
    std::vector<LineTask *> pointers;
    for (LineTask &task : tasks) {
        pointers.push_back(&task);
    }
    return pointers;
}

} // namespace

class TextRecognitionGroupsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLineIsInOneGroupOfItsModel()
    {
        std::vector<LineTask> few = tasksOf(3, u"few"_s);
        std::vector<LineTask> many = tasksOf(21, u"many more"_s);
        const Workers workers(2);
        const LineGroups groups({{u"one"_s, pointersTo(few)}, {u"two"_s, pointersTo(many)}}, 4,
                                workers);
        std::multiset<LineTask *> found;
        for (const LineGroup &group : groups.groups()) {
            QVERIFY(!group.tasks.empty());
            QVERIFY(group.tasks.size() <= 4);
            const std::vector<LineTask> &own = group.model == "one"_L1 ? few : many;
            for (LineTask *task : group.tasks) {
                QVERIFY(task >= own.data() && task < own.data() + own.size());
                found.insert(task);
            }
        }
        QCOMPARE(found.size(), few.size() + many.size());
        QCOMPARE(std::set(found.begin(), found.end()).size(), found.size());
        QCOMPARE(groups.groups().size(), std::size_t(7));
        // The longest first.
        QCOMPARE(groups.groups().front().model, u"two"_s);
        std::atomic<std::size_t> called = 0;
        groups.forEach([&](const LineGroup &group) { called += group.tasks.size(); });
        QCOMPARE(called.load(), found.size());
    }

    void fewLinesAreLeftToSeveralThreads()
    {
        std::vector<LineTask> tasks = tasksOf(4, u"line"_s);
        const Workers workers(2);
        QCOMPARE(LineGroups({{u"one"_s, pointersTo(tasks)}}, 4, workers).groups().size(),
                 std::size_t(2));
        QCOMPARE(LineGroups({}, 4, workers).groups().size(), std::size_t(0));
        QCOMPARE(LineGroups({{u"one"_s, {}}}, 4, workers).groups().size(), std::size_t(0));
    }

    void longLinesAreInGroupsOfTheirOwn()
    {
        std::vector<LineTask> tasks = tasksOf(20, QString(250, u'm'));
        QVERIFY(tasks.front().image().picture.width > 4000);
        const Workers workers(1);
        QCOMPARE(LineGroups({{u"one"_s, pointersTo(tasks)}}, 4, workers).groups().size(),
                 tasks.size());
    }

    void linesReadTogetherAreRemembered()
    {
        EngineCache engines{ModelFolder()};
        if (!engines.folder().has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
        std::vector<LineTask> together;
        std::vector<LineTask> alone;
        for (const QString &text : {u"read together"_s, u"or alone"_s, u"xq;j"_s}) {
            together.push_back(taskOf(text));
            alone.push_back(taskOf(text));
        }
        LineTask::readOnce(pointersTo(together), engines, u"eng"_s);
        LineTask::read(pointersTo(together), engines, u"eng"_s);
        for (std::size_t i = 0; i < together.size(); ++i) {
            QCOMPARE(together[i].others().size(), 1);
            QCOMPARE(together[i].others().front().text(), alone[i].read(engines, u"eng"_s).text());
            QCOMPARE(together[i].readOnce(engines, u"eng"_s).text(),
                     alone[i].readOnce(engines, u"eng"_s).text());
        }
        QCOMPARE(together[0].read(engines, u"eng"_s).text(), u"read together"_s);
    }

    void anotherLanguageHasToBeSure()
    {
        const Languages languages({u"deu"_s, u"eng"_s, u"fra"_s});
        const QString english = u"Everyone has the right to recognition as a person"_s;
        QCOMPARE(surelyOther(english, u"fra"_s, languages), u"eng"_s);
        QCOMPARE(surelyOther(english, u"eng"_s, languages), QString());
        QCOMPARE(surelyOther(english, u"fra"_s, Languages({u"deu"_s, u"fra"_s})).contains("eng"_L1),
                 false);
        QCOMPARE(surelyOther(u"OK"_s, u"fra"_s, languages), QString());
        QCOMPARE(surelyOther({}, u"fra"_s, languages), QString());
    }
};

QTEST_MAIN(TextRecognitionGroupsTest)
#include "TextRecognitionGroupsTest.moc"
