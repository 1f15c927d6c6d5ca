// SPDX-License-Identifier: MIT
// The loaded models: one copy for all who ask, dropped when idle; and the threads that use them.

#include "TextRecognition/EngineCache.h"

#include "TextRecognition/IdleDropper.h"
#include "TextRecognition/Workers.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>
#include <latch>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace recognition;

class EngineCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!ModelFolder().has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
    }

    void allWhoAskShareACopy()
    {
        EngineCache engines{ModelFolder()};
        const auto first = engines.engine(u"eng"_s, Dictionary::Without);
        QVERIFY(first);
        QCOMPARE(engines.engine(u"eng"_s, Dictionary::Without), first);
        QCOMPARE(engines.count(), std::size_t(1));
        const auto withWords = engines.engine(u"eng"_s, Dictionary::With);
        QVERIFY(withWords != first);
        QVERIFY(withWords->knows(u"house"_s));
        QVERIFY(!first->knows(u"house"_s));
        QCOMPARE(engines.count(), std::size_t(2));
    }

    void whoAsksWhileItIsLoadedWaits()
    {
        EngineCache engines{ModelFolder()};
        std::array<std::shared_ptr<const Engine>, 4> found;
        std::latch start(std::ptrdiff_t(found.size()));
        {
            std::vector<std::jthread> threads;
            for (auto &engine : found) {
                threads.emplace_back([&] {
                    start.arrive_and_wait();
                    engine = engines.engine(u"eng"_s, Dictionary::Without);
                });
            }
        }
        QVERIFY(found.front());
        for (const auto &engine : found) {
            QCOMPARE(engine, found.front());
        }
        QCOMPARE(engines.count(), std::size_t(1));
    }

    void missingModelsAreNullAndTakeNothing()
    {
        EngineCache engines{ModelFolder()};
        QVERIFY(!engines.engine(u"no-such-model"_s, Dictionary::With));
        QCOMPARE(engines.count(), std::size_t(0));
        QVERIFY(!engines.dropIdle(1h));
    }

    void modelsAreFoundOnceTheyAreInstalled()
    {
        const QTemporaryDir folder;
        EngineCache engines{ModelFolder(folder.path())};
        QVERIFY(!engines.engine(u"eng"_s, Dictionary::Without));
        QVERIFY(QFile::link(ModelFolder().fileOf(u"eng"_s), folder.filePath(u"eng.traineddata"_s)));
        QVERIFY(engines.engine(u"eng"_s, Dictionary::Without));
    }

    void unreadableModelsAreToldAndRemembered()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"eng.traineddata"_s);
        const auto write = [&path](const QByteArray &bytes) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        QVERIFY(write(QByteArray(1000, 'x')));
        EngineCache engines{ModelFolder(folder.path())};
        // Nobody has asked for it.
        QVERIFY(engines.has(u"eng"_s));
        QVERIFY(engines.unreadable().isEmpty());
        QVERIFY_THROWS_EXCEPTION(UnreadableModel, engines.engine(u"eng"_s, Dictionary::Without));
        QVERIFY(!engines.has(u"eng"_s));
        QVERIFY(engines.readable().isEmpty());
        QCOMPARE(engines.unreadable(), QStringList{u"eng"_s});
        QCOMPARE(engines.count(), std::size_t(0));

        // Installed again, it is another file.
        QFile whole(ModelFolder().file(u"eng"_s)->path);
        QVERIFY(whole.open(QIODevice::ReadOnly));
        QVERIFY(write(whole.readAll()));
        QVERIFY(engines.has(u"eng"_s));
        QVERIFY(engines.unreadable().isEmpty());
        QVERIFY(engines.engine(u"eng"_s, Dictionary::Without));
    }

    void missingModelsMayBeAskedForByManyAtOnce()
    {
        EngineCache engines{ModelFolder()};
        std::atomic<int> found = 0;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&] {
                    for (int k = 0; k < 50; ++k) {
                        found += engines.engine(u"no-such-model"_s, Dictionary::With) ? 1 : 0;
                    }
                });
            }
        }
        QCOMPARE(found.load(), 0);
        QVERIFY(!engines.dropIdle(1h));
    }

    void idleEnginesAreDroppedWhenTheirTimeIsUp()
    {
        EngineCache::Clock::time_point now{};
        EngineCache engines(ModelFolder(), [&now] { return now; });
        engines.engine(u"eng"_s, Dictionary::Without);
        now += 2min;
        QVERIFY(engines.dropIdle(3min));
        QCOMPARE(engines.count(), std::size_t(1));
        // Used again, it is as good as new.
        engines.engine(u"eng"_s, Dictionary::Without);
        now += 2min;
        QVERIFY(engines.dropIdle(3min));
        QCOMPARE(engines.count(), std::size_t(1));
        now += 1min;
        QVERIFY(!engines.dropIdle(3min));
        QCOMPARE(engines.count(), std::size_t(0));
    }

    void enginesInUseAreNotDropped()
    {
        EngineCache::Clock::time_point now{};
        EngineCache engines(ModelFolder(), [&now] { return now; });
        auto engine = engines.engine(u"eng"_s, Dictionary::Without);
        now += 1h;
        QVERIFY(engines.dropIdle(3min));
        QCOMPARE(engines.count(), std::size_t(1));
        QVERIFY(engine->read(GreyImage(100, 40, 255)).isEmpty());
        engine.reset();
        QVERIFY(!engines.dropIdle(3min));
        QCOMPARE(engines.count(), std::size_t(0));
    }

    void enginesMayBeDroppedWhileOthersAsk()
    {
        EngineCache engines{ModelFolder()};
        std::atomic<bool> done = false;
        std::jthread dropper([&] {
            while (!done) {
                engines.dropIdle(0ms);
                engines.count();
            }
        });
        int found = 0;
        for (int i = 0; i < 20; ++i) {
            const auto engine = engines.engine(u"eng"_s, Dictionary::Without);
            found += engine && engine->read(GreyImage(100, 40, 255)).isEmpty() ? 1 : 0;
        }
        done = true;
        QCOMPARE(found, 20);
    }

    void theDropperEmptiesTheCache()
    {
        EngineCache engines{ModelFolder()};
        IdleDropper dropper(engines, 40ms);
        for (int round = 0; round < 2; ++round) {
            engines.engine(u"eng"_s, Dictionary::Without);
            dropper.restart();
            QTRY_COMPARE(engines.count(), std::size_t(0));
        }
    }

    void theDropperStopsAtOnce()
    {
        EngineCache engines{ModelFolder()};
        engines.engine(u"eng"_s, Dictionary::Without);
        QElapsedTimer timer;
        timer.start();
        {
            IdleDropper dropper(engines, 1h);
            dropper.restart();
        }
        QVERIFY(timer.elapsed() < 10'000);
        QCOMPARE(engines.count(), std::size_t(1));
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

QTEST_GUILESS_MAIN(EngineCacheTest)
#include "EngineCacheTest.moc"
