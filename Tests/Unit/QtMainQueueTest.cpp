// SPDX-License-Identifier: MIT
// The main queue on a real event loop.

#include "Platform/Qt/QtMainQueue.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>

using namespace std::chrono_literals;

class QtMainQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asyncRunsLaterAndInOrder();
    void asyncFromAnotherThreadRunsOnThisOne();
    void asyncAfterWaits();
    void tasksOfADeadQueueAreDropped();
    void timerRepeatsUntilInvalidated();
    void timerStopsWhenDropped();
    void timerMayBeDroppedFromItsOwnBlock();
    void timerDiesWithTheQueue();
};

void QtMainQueueTest::asyncRunsLaterAndInOrder()
{
    QtMainQueue queue;
    QList<int> order;
    queue.async([&] {
        order.append(1);
        queue.async([&] { order.append(3); });
        order.append(2);
    });
    QVERIFY(order.isEmpty());
    QTRY_COMPARE(order, QList<int>({1, 2, 3}));
}

void QtMainQueueTest::asyncFromAnotherThreadRunsOnThisOne()
{
    QtMainQueue queue;
    QThread *ranOn = nullptr;
    const std::unique_ptr<QThread> other(
        QThread::create([&] { queue.async([&] { ranOn = QThread::currentThread(); }); }));
    other->start();
    QVERIFY(other->wait());
    QVERIFY(!ranOn);
    QTRY_COMPARE(ranOn, QThread::currentThread());
}

void QtMainQueueTest::asyncAfterWaits()
{
    QtMainQueue queue;
    QElapsedTimer clock;
    clock.start();
    qint64 elapsed = -1;
    queue.asyncAfter(150ms, [&] { elapsed = clock.elapsed(); });
    bool atOnce = false;
    queue.asyncAfter(0ms, [&] { atOnce = true; });
    QVERIFY(!atOnce);
    QTRY_VERIFY(atOnce);
    QCOMPARE(elapsed, -1);
    QTRY_VERIFY(elapsed >= 0);
    QVERIFY2(elapsed >= 150, qPrintable(QString::number(elapsed)));
}

void QtMainQueueTest::tasksOfADeadQueueAreDropped()
{
    auto queue = std::make_unique<QtMainQueue>();
    const auto alive = std::make_shared<int>(0);
    int ran = 0;
    queue->async([&, alive] { ++ran; });
    queue->asyncAfter(10ms, [&, alive] { ++ran; });
    QCOMPARE(alive.use_count(), 3);
    queue.reset();
    QTRY_COMPARE(alive.use_count(), 1); // their closures are gone, so they can never run
    QCOMPARE(ran, 0);
}

void QtMainQueueTest::timerRepeatsUntilInvalidated()
{
    QtMainQueue queue;
    int fired = 0;
    const auto timer = queue.scheduledTimer(5ms, [&](RepeatingTimer &self) {
        QVERIFY(self.isValid());
        if (++fired == 3) {
            self.invalidate();
        }
    });
    QVERIFY(timer->isValid());
    QTRY_VERIFY(!timer->isValid());
    bool later = false;
    queue.asyncAfter(50ms, [&] { later = true; });
    QTRY_VERIFY(later);
    QCOMPARE(fired, 3);
}

void QtMainQueueTest::timerStopsWhenDropped()
{
    QtMainQueue queue;
    int fired = 0;
    auto timer = queue.scheduledTimer(5ms, [&](RepeatingTimer &) { ++fired; });
    QTRY_VERIFY(fired > 0);
    timer.reset();
    const int before = fired;
    bool later = false;
    queue.asyncAfter(50ms, [&] { later = true; });
    QTRY_VERIFY(later);
    QCOMPARE(fired, before);
}

void QtMainQueueTest::timerMayBeDroppedFromItsOwnBlock()
{
    QtMainQueue queue;
    std::shared_ptr<RepeatingTimer> timer;
    const auto text = std::make_shared<QString>(QStringLiteral("still here"));
    QString seen;
    timer = queue.scheduledTimer(5ms, [&, text](RepeatingTimer &self) {
        timer.reset();
        self.invalidate();
        seen = *text; // the block itself must have outlived its timer
    });
    QTRY_COMPARE(seen, *text);
    QTRY_COMPARE(text.use_count(), 1);
}

void QtMainQueueTest::timerDiesWithTheQueue()
{
    auto queue = std::make_unique<QtMainQueue>();
    int fired = 0;
    const auto timer = queue->scheduledTimer(5ms, [&](RepeatingTimer &) { ++fired; });
    queue.reset();
    QVERIFY(!timer->isValid());
    QtMainQueue other;
    bool later = false;
    other.asyncAfter(50ms, [&] { later = true; });
    QTRY_VERIFY(later);
    QCOMPARE(fired, 0);
    timer->invalidate();
}

QTEST_GUILESS_MAIN(QtMainQueueTest)
#include "QtMainQueueTest.moc"
