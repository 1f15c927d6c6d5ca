// SPDX-License-Identifier: MIT
// Launch at login from inside a sandbox, with the desktop's portal played.

#include "Platform/Portal/PortalLoginItem.h"

#include "Support/BackgroundPortal.h"
#include "Support/FakeServices.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PortalLoginItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { BackgroundPortal::end(); }

    void asksThePortal();
    void logsWhatThePortalDoesNot_data();
    void logsWhatThePortalDoesNot();
    void logsThatThePortalHasNoSuchThing();
    void laterRequestTakesThePlace();
    void answerAfterItsEndIsNothing();

private:
    static PortalLoginItem item(SystemLog &log)
    {
        return {log, u"Because"_s, {u"editor"_s, u"--quiet"_s}};
    }

    std::unique_ptr<BackgroundPortal> m_portal;
    std::unique_ptr<FakeSystemLog> m_log;
};

void PortalLoginItemTest::init()
{
    m_portal = std::make_unique<BackgroundPortal>();
    m_log = std::make_unique<FakeSystemLog>();
}

void PortalLoginItemTest::asksThePortal()
{
    QVERIFY(m_portal->start());
    PortalLoginItem login = item(*m_log);
    QCOMPARE(login.registerItem(), std::nullopt);
    QTRY_COMPARE(m_portal->requests.size(), 1);
    const QVariantMap asked = m_portal->requests.first();
    QCOMPARE(asked.value(u"autostart"_s).toBool(), true);
    QCOMPARE(asked.value(u"reason"_s).toString(), u"Because"_s);
    QCOMPARE(asked.value(u"commandline"_s).toStringList(),
             (QStringList{u"editor"_s, u"--quiet"_s}));

    QCOMPARE(login.unregisterItem(), std::nullopt);
    QTRY_COMPARE(m_portal->requests.size(), 2);
    QCOMPARE(m_portal->requests.last().value(u"autostart"_s).toBool(), false);
    // Both answers are there before a third, which fails.
    m_portal->response = 2;
    login.registerItem();
    QTRY_COMPARE(m_log->lines.size(), 1);
}

void PortalLoginItemTest::logsWhatThePortalDoesNot_data()
{
    QTest::addColumn<uint>("response");
    QTest::addColumn<bool>("obeys");
    QTest::addColumn<QString>("why");
    QTest::newRow("denied") << 1U << true << u"does not allow it"_s;
    QTest::newRow("failed") << 2U << true << u"org.freedesktop.portal.Background"_s;
    QTest::newRow("kept") << 0U << false << u"as it was"_s;
}

void PortalLoginItemTest::logsWhatThePortalDoesNot()
{
    QFETCH(const uint, response);
    QFETCH(const bool, obeys);
    QFETCH(const QString, why);
    m_portal->response = response;
    m_portal->obeys = obeys;
    QVERIFY(m_portal->start());
    PortalLoginItem login = item(*m_log);
    login.registerItem();
    QTRY_COMPARE(m_log->lines.size(), 1);
    QVERIFY(m_log->lines.first().startsWith(u"LaunchAtLogin toggle failed: "_s));
    QVERIFY2(m_log->lines.first().contains(why), qPrintable(m_log->lines.first()));
}

void PortalLoginItemTest::logsThatThePortalHasNoSuchThing()
{
    QVERIFY(m_portal->start());
    BackgroundPortal::leavePlace();
    PortalLoginItem login = item(*m_log);
    login.registerItem();
    QTRY_COMPARE(m_log->lines.size(), 1);
}

void PortalLoginItemTest::laterRequestTakesThePlace()
{
    m_portal->isSilent = true;
    QVERIFY(m_portal->start());
    PortalLoginItem login = item(*m_log);
    login.registerItem();
    QTRY_COMPARE(m_portal->requests.size(), 1);
    m_portal->isSilent = false;
    m_portal->response = 1;
    login.unregisterItem();
    QTRY_COMPARE(m_log->lines.size(), 1);
    QCOMPARE(m_portal->requests.size(), 2);
}

void PortalLoginItemTest::answerAfterItsEndIsNothing()
{
    m_portal->response = 1;
    QVERIFY(m_portal->start());
    {
        PortalLoginItem login = item(*m_log);
        login.registerItem();
    }
    QTRY_COMPARE(m_portal->requests.size(), 1);
    PortalLoginItem login = item(*m_log);
    login.registerItem();
    // The second one's alone.
    QTRY_COMPARE(m_log->lines.size(), 1);
    QCOMPARE(m_portal->requests.size(), 2);
}

QTEST_GUILESS_MAIN(PortalLoginItemTest)
#include "PortalLoginItemTest.moc"
