// SPDX-License-Identifier: MIT
// A portal that takes a program's id later than the program waits for, played on the session bus.

#include "Platform/Portal/PortalApplication.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QTest>

#include <chrono>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Takes the id at the first call, which is not answered in time, and says at the next one that it
/// has it, as xdg-desktop-portal does.
class LatePortal : public QDBusVirtualObject
{
public:
    LatePortal()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s))
    {
        isUp = m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this) &&
               m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    ~LatePortal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    bool isUp = false;
    int registrations = 0;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() != u"Register") {
            return false;
        }
        ++registrations;
        return m_bus.send(
            registrations == 1
                ? message.createErrorReply(QDBusError::NoReply, u"no reply in time"_s)
                : message.createErrorReply(u"org.freedesktop.portal.Error.Failed"_s,
                                           u"Connection already associated with an id"_s));
    }

private:
    QDBusConnection m_bus;
};

/// Asked from another thread: it waits for the portal, which this one plays.
QString askedId()
{
    auto answer = std::async(std::launch::async, [] { return portalApplicationId(); });
    [[maybe_unused]] const bool isAnswered = QTest::qWaitFor(
        [&answer] { return answer.wait_for(0s) == std::future_status::ready; }, testPatience);
    return answer.get();
}
} // namespace

class PortalRegistryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idThatWasTakenLateCounts();
};

void PortalRegistryTest::idThatWasTakenLateCounts()
{
    QGuiApplication::setDesktopFileName(u"org.example.Late"_s);
    LatePortal portal;
    QVERIFY(portal.isUp);
    QVERIFY(askedId() != u"org.example.Late");
    QCOMPARE(askedId(), u"org.example.Late"_s);
    QCOMPARE(portal.registrations, 2);
    QCOMPARE(askedId(), u"org.example.Late"_s);
    QCOMPARE(portal.registrations, 2);
}

QTEST_GUILESS_MAIN(PortalRegistryTest)
#include "PortalRegistryTest.moc"
