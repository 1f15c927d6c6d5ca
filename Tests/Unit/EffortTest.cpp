// SPDX-License-Identifier: MIT
// How the work on a picture ends early: by a stop, by a spent budget, by a failure on any thread.

#include "TextRecognition/Effort.h"

#include "TextRecognition/Budget.h"
#include "TextRecognition/Workers.h"

#include <QTest>

#include <atomic>
#include <latch>
#include <new>
#include <pthread.h>
#include <set>
#include <thread>

using namespace std::chrono_literals;
using namespace recognition;

namespace {

/// What each thread has taken, moved by the tests.
thread_local std::chrono::nanoseconds taken = 0ns;

std::chrono::nanoseconds testClock()
{
    return taken;
}

/// Enough calls for the clock to have been asked.
void checkOften()
{
    for (int i = 0; i < 16; ++i) {
        checkpoint();
    }
}

} // namespace

class EffortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { taken = 0ns; }

    void withoutAnEffortNothingEnds()
    {
        QVERIFY(!Effort::current());
        checkOften();
    }

    void aStopEndsTheWorkAtOnce()
    {
        std::stop_source source;
        Effort effort(source.get_token());
        const Effort::Share share(&effort);
        checkpoint();
        source.request_stop();
        QVERIFY_THROWS_EXCEPTION(Stopped, checkpoint());
    }

    void theBudgetIsOfTheTimeTaken()
    {
        taken = 5s;
        Effort effort({}, 100ms, &testClock);
        effort.foundText();
        const Effort::Share share(&effort);
        taken += 100ms;
        checkOften();
        taken += 1ms;
        QVERIFY_THROWS_EXCEPTION(Spent, checkOften());
        // For good.
        QVERIFY_THROWS_EXCEPTION(Spent, checkpoint());
        QCOMPARE(effort.taken(), std::chrono::nanoseconds(101ms));
    }

    void withoutTextAQuarterIsEnough_data()
    {
        QTest::addColumn<std::chrono::milliseconds>("finding");
        QTest::newRow("lines found at once") << 0ms;
        // Which may take more than a quarter.
        QTest::newRow("lines found slowly") << 60ms;
    }

    void withoutTextAQuarterIsEnough()
    {
        QFETCH(const std::chrono::milliseconds, finding);
        Effort effort({}, 100ms, &testClock);
        const Effort::Share share(&effort);
        taken += finding;
        checkOften();
        effort.beginReading();
        taken += 25ms;
        checkOften();
        taken += 1ms;
        QVERIFY_THROWS_EXCEPTION(Spent, checkOften());
        effort.foundText();
        checkOften();
        taken += 75ms - finding;
        QVERIFY_THROWS_EXCEPTION(Spent, checkOften());
    }

    void findingLinesTakesNoMoreThanAllTheTime()
    {
        Effort effort({}, 100ms, &testClock);
        const Effort::Share share(&effort);
        taken += 101ms;
        QVERIFY_THROWS_EXCEPTION(Spent, checkOften());
    }

    void whatThreadsTakeIsAddedUp()
    {
        Effort effort({}, 100ms, &testClock);
        effort.foundText();
        const Effort::Share share(&effort);
        std::jthread([&effort] {
            const Effort::Share ofHelper(&effort);
            taken += 70ms;
        }).join();
        QCOMPARE(effort.taken(), std::chrono::nanoseconds(70ms));
        taken += 31ms;
        QVERIFY_THROWS_EXCEPTION(Spent, checkOften());
    }

    void aLiftedBudgetLeavesTheStop()
    {
        std::stop_source source;
        Effort effort(source.get_token(), 100ms, &testClock);
        const Effort::Share share(&effort);
        taken += 1h;
        effort.liftBudget();
        checkOften();
        source.request_stop();
        QVERIFY_THROWS_EXCEPTION(Stopped, checkpoint());
    }

    void theThreadsClockCountsItsOwnWork()
    {
        const auto before = threadTime();
        std::jthread([] {
            volatile int sum = 0;
            while (threadTime() < 20ms) {
                sum = sum + 1;
            }
        }).join();
        QVERIFY(threadTime() - before < 20ms);
    }

    void helpersWorkForTheSameEffort()
    {
        std::stop_source source;
        Effort effort(source.get_token());
        const Effort::Share share(&effort);
        std::latch both(2);
        std::atomic<int> own = 0;
        Workers(2).forEach(2, [&](std::size_t) {
            both.arrive_and_wait();
            own += Effort::current() == &effort ? 1 : 0;
        });
        QCOMPARE(own.load(), 2);
    }

    void aStopEndsTheHelpersToo()
    {
        std::stop_source source;
        Effort effort(source.get_token());
        const Effort::Share share(&effort);
        std::latch both(2);
        const auto work = [&](std::size_t) {
            both.arrive_and_wait();
            source.request_stop();
            while (true) {
                checkpoint();
            }
        };
        QVERIFY_THROWS_EXCEPTION(Stopped, Workers(2).forEach(100, work));
    }

    void whatAHelperThrowsIsThrownWhereItWasAsked()
    {
        const auto asking = std::this_thread::get_id();
        std::latch both(2);
        std::atomic<int> done = 0;
        const auto work = [&](std::size_t piece) {
            if (piece < 2) {
                both.arrive_and_wait();
            }
            if (std::this_thread::get_id() != asking) {
                throw std::bad_alloc();
            }
            ++done;
        };
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, Workers(2).forEach(2, work));
        QCOMPARE(done.load(), 1);
    }

    void aFailureEndsTheWorkOfAll()
    {
        std::atomic<int> begun = 0;
        const auto work = [&](std::size_t) {
            ++begun;
            throw std::bad_alloc();
        };
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, Workers(2).forEach(1000, work));
        QVERIFY(begun <= 2);
    }

    void withoutAnyMoreThreadTheAskingOneDoesItAll()
    {
        // No address space holds such a stack.
        pthread_attr_t usual;
        QCOMPARE(pthread_getattr_default_np(&usual), 0);
        pthread_attr_t endless = usual;
        QCOMPARE(pthread_attr_setstacksize(&endless, std::size_t(1) << 50), 0);
        QCOMPARE(pthread_setattr_default_np(&endless), 0);
        std::set<std::thread::id> threads;
        int done = 0;
        Workers(4).forEach(10, [&](std::size_t) {
            threads.insert(std::this_thread::get_id());
            ++done;
        });
        QCOMPARE(pthread_setattr_default_np(&usual), 0);
        QCOMPARE(done, 10);
        QCOMPARE(threads, std::set{std::this_thread::get_id()});
    }

    void aScreenOfEightMegapixelsHasLessThanEightSeconds()
    {
#ifndef VELLORA_SLOW_BUILD
        QVERIFY(budgetFor(8'000'000) < 8s);
        QVERIFY(budgetFor(8'000'000) > 6s);
#endif
        QVERIFY(budgetFor(0) >= 1s);
        QVERIFY(budgetFor(2'000'000) < budgetFor(8'000'000));
        // By area, beyond what any picture has.
        const auto byArea = [](qint64 pixels) {
            return budgetFor(pixels) - budgetFor(0);
        };
        QCOMPARE(byArea(32'000'000), 4 * byArea(8'000'000));
    }
};

QTEST_GUILESS_MAIN(EffortTest)
#include "EffortTest.moc"
