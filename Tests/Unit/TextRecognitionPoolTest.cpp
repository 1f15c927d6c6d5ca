// SPDX-License-Identifier: MIT
// The loaded models: lent, shared, given back, dropped when idle; and the threads that use them.

#include "TextRecognition/EnginePool.h"
#include "TextRecognition/IdleDropper.h"
#include "TextRecognition/Workers.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace recognition;

class TextRecognitionPoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!ModelFolder().has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
    }

    void returnedEnginesAreLentAgain()
    {
        EnginePool pool{ModelFolder()};
        Engine *first = nullptr;
        {
            const EnginePool::Loan loan = pool.lend(u"eng"_s, Dictionary::Without);
            QVERIFY(bool(loan));
            first = loan.operator->();
            QCOMPARE(pool.idleCount(), std::size_t(0));
            const EnginePool::Loan second = pool.lend(u"eng"_s, Dictionary::Without);
            QVERIFY(second.operator->() != first);
        }
        QCOMPARE(pool.idleCount(), std::size_t(2));
        QVERIFY(bool(pool.lend(u"eng"_s, Dictionary::Without)));
        QCOMPARE(pool.idleCount(), std::size_t(2));
    }

    void whoWaitsGetsTheCopyThatIsLent()
    {
        EnginePool pool{ModelFolder()};
        std::atomic<int> failures = 0;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&] {
                    const EnginePool::Loan loan =
                        pool.lend(u"eng"_s, Dictionary::Without, EnginePool::IfLent::Wait);
                    failures += !loan;
                    failures += bool(
                        pool.lend(u"no-such-model"_s, Dictionary::With, EnginePool::IfLent::Wait));
                });
            }
        }
        QCOMPARE(failures.load(), 0);
        QCOMPARE(pool.idleCount(), std::size_t(1));
    }

    void missingModelsAreNotLent()
    {
        EnginePool pool{ModelFolder()};
        QVERIFY(!pool.lend(u"no-such-model"_s, Dictionary::With));
        QCOMPARE(pool.idleCount(), std::size_t(0));
    }

    void idleEnginesAreDroppedWhenTheirTimeIsUp()
    {
        EnginePool::Clock::time_point now{};
        EnginePool pool(ModelFolder(), [&now] { return now; });
        pool.lend(u"eng"_s, Dictionary::Without);
        now += 2min;
        QVERIFY(pool.dropIdle(3min));
        QCOMPARE(pool.idleCount(), std::size_t(1));
        // Used again, it is as good as new.
        pool.lend(u"eng"_s, Dictionary::Without);
        now += 2min;
        QVERIFY(pool.dropIdle(3min));
        QCOMPARE(pool.idleCount(), std::size_t(1));
        now += 1min;
        QVERIFY(!pool.dropIdle(3min));
        QCOMPARE(pool.idleCount(), std::size_t(0));
    }

    void lentEnginesAreNotDropped()
    {
        EnginePool::Clock::time_point now{};
        EnginePool pool(ModelFolder(), [&now] { return now; });
        {
            const EnginePool::Loan loan = pool.lend(u"eng"_s, Dictionary::Without);
            now += 1h;
            pool.dropIdle(3min);
            QVERIFY(loan->read(GreyImage(100, 40, 255), ReadMode::Line).isEmpty());
        }
        QCOMPARE(pool.idleCount(), std::size_t(1));
    }

    void theLongestUnusedMakesRoom()
    {
        EnginePool::Clock::time_point now{};
        EnginePool pool(ModelFolder(), [&now] { return now; });
        const int most = EnginePool::room / EnginePool::sizeOf(u"eng"_s);
        Engine *newest = nullptr;
        {
            std::vector<EnginePool::Loan> loans;
            for (int i = 0; i < most; ++i) {
                loans.push_back(pool.lend(u"eng"_s, Dictionary::Without));
            }
            newest = loans.back().operator->();
            for (EnginePool::Loan &loan : loans) {
                const EnginePool::Loan back = std::move(loan);
                now += 1s;
            }
        }
        QCOMPARE(pool.idleCount(), std::size_t(most));
        // Another key than that of the idle ones, so that it has to be loaded.
        QVERIFY(bool(pool.lend(u"eng"_s, Dictionary::With)));
        QCOMPARE(pool.idleCount(), std::size_t(most));
        QCOMPARE(pool.lend(u"eng"_s, Dictionary::Without).operator->(), newest);
    }

    void aPageKeepsItsEnginesToItsEnd()
    {
        EnginePool::Clock::time_point now{};
        EnginePool pool(ModelFolder(), [&now] { return now; });
        const int most = EnginePool::room / EnginePool::sizeOf(u"eng"_s);
        pool.lend(u"eng"_s, Dictionary::With);
        now += 1s;
        {
            const EnginePool::Page page(pool);
            std::vector<EnginePool::Loan> loans;
            for (int i = 0; i < most + 2; ++i) {
                loans.push_back(pool.lend(u"eng"_s, Dictionary::Without));
            }
            loans.clear();
            // Only the one from before made room.
            QCOMPARE(pool.idleCount(), std::size_t(most + 2));
        }
        // They stay for another like it, and make room for what is not.
        QCOMPARE(pool.idleCount(), std::size_t(most + 2));
        now += 1s;
        const EnginePool::Page other(pool);
        pool.lend(u"eng"_s, Dictionary::With);
        QCOMPARE(pool.idleCount(), std::size_t(most));
    }

    void modelsWithoutAFileTakeNoRoom()
    {
        EnginePool pool{ModelFolder()};
        pool.lend(u"eng"_s, Dictionary::Without);
        for (int i = 0; i < 2 * EnginePool::room; ++i) {
            QVERIFY(!pool.lend(u"no-such-model"_s, Dictionary::Without));
        }
        QCOMPARE(pool.idleCount(), std::size_t(1));
    }

    void theDropperEmptiesThePool()
    {
        EnginePool pool{ModelFolder()};
        IdleDropper dropper(pool, 40ms);
        for (int round = 0; round < 2; ++round) {
            pool.lend(u"eng"_s, Dictionary::Without);
            dropper.restart();
            QTRY_COMPARE(pool.idleCount(), std::size_t(0));
        }
    }

    void theDropperStopsAtOnce()
    {
        EnginePool pool{ModelFolder()};
        pool.lend(u"eng"_s, Dictionary::Without);
        QElapsedTimer timer;
        timer.start();
        {
            IdleDropper dropper(pool, 1h);
            dropper.restart();
        }
        QVERIFY(timer.elapsed() < 10'000);
        QCOMPARE(pool.idleCount(), std::size_t(1));
    }

    void allWorkIsDoneOnce()
    {
        const Workers workers(3);
        std::vector<std::atomic<int>> done(1000);
        workers.forEach(done.size(), [&done](std::size_t i) { ++done[i]; });
        for (const auto &count : done) {
            QCOMPARE(count.load(), 1);
        }
        workers.forEach(0, [](std::size_t) { QFAIL("there is nothing to do"); });
    }

    void pagesDoNotWaitForEachOther()
    {
        // Every page's first piece waits until all pages have begun: that would never end if a
        // page needed a thread that another one keeps busy.
        const Workers workers(2);
        std::atomic<int> begun = 0;
        std::vector<std::thread> pages;
        for (int page = 0; page < 3; ++page) {
            pages.emplace_back([&workers, &begun] {
                std::atomic<bool> first = true;
                workers.forEach(2, [&](std::size_t) {
                    if (first.exchange(false)) {
                        ++begun;
                    }
                    while (begun < 3) {
                        std::this_thread::yield();
                    }
                });
            });
        }
        for (std::thread &page : pages) {
            page.join();
        }
        QCOMPARE(begun.load(), 3);
    }
};

QTEST_GUILESS_MAIN(TextRecognitionPoolTest)
#include "TextRecognitionPoolTest.moc"
