// SPDX-License-Identifier: MIT
#include "UpdateSchedule.h"

#include "ForeignText.h"
#include "UpdateFixture.h"
#include "UpdateTexts.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = UpdateResult::Kind;

/// The look in the background: once a day, without being asked, and without a word twice.
class UpdateScheduleTest : public UpdateFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void looksAtTheStart();
    void looksOnceADay();
    void looksAgainOnlyAfterAChange();
    void remembersTheDayAcrossRuns();
    void isNotMisledByTheClock_data();
    void isNotMisledByTheClock();
    void tellsOfAVersionOnce();
    void tellsOfAVersionWithoutAName();
    void notifiesOnce();
    void doesNotTellWhatTheUserSaw();
    void keepsFailuresToItself();
    void doesNothingWithoutASource();
    void endsWithItsOwner();
    void readsVersions_data();
    void readsVersions();
    void cleansForeignTexts_data();
    void cleansForeignTexts();

private:
    void pass(std::chrono::milliseconds time);

    QDateTime m_now;
    std::unique_ptr<UpdateSchedule> m_schedule;
};

void UpdateScheduleTest::init()
{
    UpdateFixture::init();
    m_now = QDateTime(QDate(2026, 11, 22), QTime(10, 0), Qt::UTC);
    m_schedule = std::make_unique<UpdateSchedule>([this] { return m_now; });
}

void UpdateScheduleTest::cleanup()
{
    m_schedule.reset();
    UpdateFixture::cleanup();
}

void UpdateScheduleTest::pass(std::chrono::milliseconds time)
{
    m_now = m_now.addMSecs(time.count());
    m_platform->mainQueue.advance(time);
}

void UpdateScheduleTest::looksAtTheStart()
{
    QVERIFY(source().looks.isEmpty());
    QVERIFY(m_schedule->start());
    QCOMPARE(source().startCount, 1);
    QCOMPARE(source().looks, {UpdateSource::Look::InBackground});
    source().answer(ended(Kind::UpToDate));
    QCOMPARE(source().taskCount, 0);
}

void UpdateScheduleTest::looksOnceADay()
{
    m_schedule->start();
    source().answer(ended(Kind::UpToDate));
    for (int count = 0; count < 5; ++count) {
        pass(1h);
        source().change();
    }
    QCOMPARE(source().looks.size(), 1);
    // One plan, however many changes.
    QCOMPARE(m_platform->mainQueue.waitingCount(), 1);
    pass(19h - 1s);
    QCOMPARE(source().looks.size(), 1);
    pass(1s);
    QCOMPARE(source().looks.size(), 2);
}

void UpdateScheduleTest::looksAgainOnlyAfterAChange()
{
    m_schedule->start();
    source().answer(ended(Kind::UpToDate));
    pass(100h);
    QCOMPARE(source().looks.size(), 1);
    QCOMPARE(m_platform->mainQueue.waitingCount(), 0);
    source().change();
    QCOMPARE(source().looks.size(), 2);
}

void UpdateScheduleTest::remembersTheDayAcrossRuns()
{
    m_schedule->start();
    source().answer(ended(Kind::UpToDate));
    m_schedule.reset();
    m_platform->reloadUserDefaults();
    pass(20h);
    m_schedule = std::make_unique<UpdateSchedule>([this] { return m_now; });
    m_schedule->start();
    QCOMPARE(source().looks.size(), 1);
    pass(4h);
    QCOMPARE(source().looks.size(), 2);
}

void UpdateScheduleTest::isNotMisledByTheClock_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("in the future") << u"2031-01-01T00:00:00Z"_s;
    QTest::newRow("no time") << u"yesterday"_s;
    QTest::newRow("nothing") << QString();
    QTest::newRow("long ago") << u"1970-01-01T00:00:00Z"_s;
}

void UpdateScheduleTest::isNotMisledByTheClock()
{
    QFETCH(const QString, stored);
    m_platform->userDefaults().set(u"updateLookedAt"_s, stored);
    m_schedule->start();
    QCOMPARE(source().looks.size(), 1);
}

void UpdateScheduleTest::tellsOfAVersionOnce()
{
    QSignalSpy told(m_schedule.get(), &UpdateSchedule::newVersion);
    m_schedule->start();
    source().answer(available());
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.takeFirst().first().toString(), u"0.2.0-1"_s);
    pass(24h);
    source().change();
    source().answer(available());
    QCOMPARE(told.size(), 0);
    Update newer = newVersion();
    newer.version = u"0.3.0-1"_s;
    pass(24h);
    source().change();
    source().answer(available(newer));
    QCOMPARE(told.size(), 1);
}

void UpdateScheduleTest::tellsOfAVersionWithoutAName()
{
    QSignalSpy told(m_schedule.get(), &UpdateSchedule::newVersion);
    m_schedule->start();
    source().answer(available(Update()));
    pass(24h);
    source().change();
    source().answer(available(Update()));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.first().first().toString(), QString());
}

void UpdateScheduleTest::notifiesOnce()
{
    FakeNotifications &notifications = m_platform->notifications;
    m_updater->startUpdater();
    source().answer(available());
    QCOMPARE(notifications.posted.size(), 1);
    QCOMPARE(notifications.posted.first().title, u"Vellora 0.2.0 is available"_s);
    QVERIFY(!notifications.posted.first().isTransient);
    QVERIFY(!window());
    notifications.click(u"update"_s);
    QVERIFY(window());
    QCOMPARE(source().looks.last(), UpdateSource::Look::ForUser);
    // A click after the end of the program's part of it.
    m_updater.reset();
    notifications.posted.first().action();
}

void UpdateScheduleTest::doesNotTellWhatTheUserSaw()
{
    m_updater->checkForUpdates();
    source().answer(available());
    QSignalSpy told(m_schedule.get(), &UpdateSchedule::newVersion);
    m_schedule->start();
    source().answer(available());
    QCOMPARE(told.size(), 0);
}

void UpdateScheduleTest::keepsFailuresToItself()
{
    QSignalSpy told(m_schedule.get(), &UpdateSchedule::newVersion);
    m_schedule->start();
    source().answer(failed(UpdateProblem::NoService));
    QCOMPARE(told.size(), 0);
    QVERIFY(!window());
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void UpdateScheduleTest::doesNothingWithoutASource()
{
    source().starts = false;
    QVERIFY(!m_schedule->start());
    source().change();
    QVERIFY(source().looks.isEmpty());
}

void UpdateScheduleTest::endsWithItsOwner()
{
    m_schedule->start();
    m_schedule.reset();
    QCOMPARE(source().taskCount, 0);
    source().answer(available());
    m_platform->mainQueue.advance(48h);
    QCOMPARE(source().looks.size(), 1);
}

void UpdateScheduleTest::readsVersions_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shown");
    QTest::newRow("Debian") << u"0.2.0-1"_s << u"0.2.0"_s;
    QTest::newRow("with an epoch") << u"1:0.2.0-1~bpo12+1"_s << u"0.2.0"_s;
    QTest::newRow("native") << u"0.2.0"_s << u"0.2.0"_s;
    QTest::newRow("with dashes") << u"0.2-rc1-3"_s << u"0.2-rc1"_s;
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("a dash alone") << u"-1"_s << u"-1"_s;
}

void UpdateScheduleTest::readsVersions()
{
    QFETCH(const QString, version);
    QTEST(UpdateTexts::versionForPeople(version), "shown");
}

void UpdateScheduleTest::cleansForeignTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << u"One\nTwo\tThree"_s << u"One\nTwo\tThree"_s;
    QTest::newRow("controls") << u"a\x1b[31mb\rc\u0007"_s << u"a[31mbc"_s;
    QTest::newRow("turned around") << u"\u202egnp\u202c.\u2066exe\u2069"_s << u"gnp.exe"_s;
    QTest::newRow("Arabic") << u"\u0646\u0635\u200f!"_s << u"\u0646\u0635\u200f!"_s;
    QTest::newRow("too long") << QString(100, u'x') << QString(20, u'x') + u'…';
    QTest::newRow("as long as allowed") << QString(20, u'x') << QString(20, u'x');
    QTest::newRow("half a pair") << QString(19, u'x') + u"\U0001F600 and more"_s
                                 << QString(19, u'x') + u'…';
    QTest::newRow("nothing") << QString() << QString();
}

void UpdateScheduleTest::cleansForeignTexts()
{
    QFETCH(const QString, text);
    QTEST(foreignText(text, 20), "shown");
}

QTEST_MAIN(UpdateScheduleTest)
#include "UpdateScheduleTest.moc"
