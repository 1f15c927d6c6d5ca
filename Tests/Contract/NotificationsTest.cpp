// SPDX-License-Identifier: MIT
// Messages on a real session bus, on which the test plays the desktop's service by a connection of
// its own.

#include "Platform/Freedesktop/FreedesktopNotifications.h"
#include "Support/FakeStatusItem.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QString serviceName = u"org.freedesktop.Notifications"_s;
const FreedesktopNotifications::Identity identity{u"Editor"_s, u"editor-icon"_s,
                                                  u"org.example.Editor"_s};

/// The desktop's side.
class Service : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Message
    {
        uint number;
        QString name;
        QString icon;
        QString title;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    explicit Service(QStringList capabilities = {})
        : m_capabilities(std::move(capabilities))
        , m_name(u"notifications-%1"_s.arg(++count))
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
    {
        m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                             QDBusConnection::ExportAllContents);
        m_owns = m_bus.registerService(serviceName);
    }
    ~Service() override { QDBusConnection::disconnectFromBus(m_name); }

    bool owns() const { return m_owns; }
    /// Keeps the answers to what comes from now on until `answerAll`.
    void hold() { m_isHolding = true; }
    void answerAll()
    {
        m_isHolding = false;
        for (const QDBusMessage &answer : std::exchange(m_answers, {})) {
            m_bus.send(answer);
        }
    }

    QList<Message> seen;
    QList<uint> closed;

public Q_SLOTS:
    QStringList GetCapabilities() const { return m_capabilities; }
    // The arguments are those that the interface prescribes.
    // NOLINTNEXTLINE(readability-function-size)
    uint Notify(const QString &name, uint replaced, const QString &icon, const QString &title,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int)
    {
        const uint number = replaced ? replaced : ++m_last;
        seen << Message{number, name, icon, title, body, actions, hints};
        if (m_isHolding) {
            setDelayedReply(true);
            m_answers << message().createReply(number);
        }
        return number;
    }
    void CloseNotification(uint number) { closed << number; }

Q_SIGNALS:
    void ActionInvoked(uint number, const QString &key);
    void NotificationClosed(uint number, uint reason);

private:
    static inline int count = 0;
    QStringList m_capabilities;
    QString m_name;
    QDBusConnection m_bus;
    bool m_owns = false;
    bool m_isHolding = false;
    QList<QDBusMessage> m_answers;
    uint m_last = 0;
};
/// Waits until all that the service has answered and told so far is known. The second message is
/// sent once the first one's answer has come, and that comes last.
bool settle(FreedesktopNotifications &notifications, const Service &service)
{
    const auto before = service.seen.size();
    const QString id = u"settle-%1"_s.arg(before);
    notifications.post(id, {u"First"_s});
    notifications.post(id, {u"Second"_s});
    return QTest::qWaitFor([&] { return service.seen.size() == before + 2; }, testPatience);
}
} // namespace

class NotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void message();
    void markup_data();
    void markup();
    void laterOneTakesThePlace();
    void closedOneIsNotReplaced();
    void impatientPosts();
    void withdrawal();
    void withdrawalBeforeTheAnswer();
    void click();
    void clicksThatAreNotOurs();
    void withoutAService();
    void serviceThatComesLater();
    void serviceThatIsReplaced();
    void fakeShowsReplacesAndWithdraws();
};

void NotificationsTest::message()
{
    Service service;
    QVERIFY(service.owns());
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"Title"_s, u"Body"_s, true});
    QTRY_COMPARE(service.seen.size(), 1);
    const Service::Message message = service.seen.first();
    QCOMPARE(message.name, identity.name);
    QCOMPARE(message.icon, identity.iconName);
    QCOMPARE(message.title, u"Title"_s);
    QCOMPARE(message.body, u"Body"_s);
    QVERIFY(message.actions.isEmpty());
    QCOMPARE(message.hints.value(u"transient"_s), QVariant(true));
    QCOMPARE(message.hints.value(u"desktop-entry"_s), QVariant(identity.desktopEntry));
    notifications.post(u"update"_s, {u"Another"_s});
    QTRY_COMPARE(service.seen.size(), 2);
    QVERIFY(service.seen.last().number != message.number);
    QCOMPARE(service.seen.last().hints.value(u"transient"_s), QVariant(false));
}

void NotificationsTest::markup_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<QString>("body");
    QTest::newRow("read") << QStringList{u"body"_s, u"body-markup"_s}
                          << u"&lt;b&gt;1 &amp; 2&lt;/b&gt;"_s;
    QTest::newRow("not read") << QStringList{u"body"_s} << u"<b>1 & 2</b>"_s;
}

void NotificationsTest::markup()
{
    QFETCH(const QStringList, capabilities);
    Service service(capabilities);
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"<i>"_s, u"<b>1 & 2</b>"_s});
    QTRY_COMPARE(service.seen.size(), 1);
    QTEST(service.seen.first().body, "body");
    // Titles are never markup.
    QCOMPARE(service.seen.first().title, u"<i>"_s);
}

void NotificationsTest::laterOneTakesThePlace()
{
    Service service;
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"First"_s});
    QTRY_COMPARE(service.seen.size(), 1);
    notifications.post(u"mark"_s, {u"Second"_s});
    QTRY_COMPARE(service.seen.size(), 2);
    QCOMPARE(service.seen.last().number, service.seen.first().number);
    QVERIFY(service.closed.isEmpty());
}

void NotificationsTest::closedOneIsNotReplaced()
{
    Service service;
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"First"_s});
    notifications.post(u"other"_s, {u"Other"_s});
    QTRY_COMPARE(service.seen.size(), 2);
    Q_EMIT service.NotificationClosed(service.seen.first().number, 1);
    QVERIFY(settle(notifications, service));
    notifications.post(u"mark"_s, {u"Again"_s});
    QTRY_COMPARE(service.seen.last().title, u"Again"_s);
    QVERIFY(service.seen.last().number != service.seen.first().number);
}

void NotificationsTest::impatientPosts()
{
    Service service;
    service.hold();
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"First"_s});
    QTRY_COMPARE(service.seen.size(), 1);
    notifications.post(u"mark"_s, {u"Skipped"_s});
    notifications.post(u"mark"_s, {u"Last"_s});
    service.answerAll();
    QTRY_COMPARE(service.seen.size(), 2);
    QCOMPARE(service.seen.last().title, u"Last"_s);
    QCOMPARE(service.seen.last().number, service.seen.first().number);
}

void NotificationsTest::withdrawal()
{
    Service service;
    FreedesktopNotifications notifications(identity);
    notifications.withdraw(u"mark"_s);
    notifications.post(u"mark"_s, {u"Title"_s});
    QTRY_COMPARE(service.seen.size(), 1);
    QVERIFY(settle(notifications, service));
    notifications.withdraw(u"mark"_s);
    QTRY_COMPARE(service.closed, QList<uint>{service.seen.first().number});
}

void NotificationsTest::withdrawalBeforeTheAnswer()
{
    Service service;
    service.hold();
    FreedesktopNotifications notifications(identity);
    notifications.post(u"mark"_s, {u"Title"_s});
    QTRY_COMPARE(service.seen.size(), 1);
    notifications.withdraw(u"mark"_s);
    QVERIFY(service.closed.isEmpty());
    service.answerAll();
    QTRY_COMPARE(service.closed, QList<uint>{service.seen.first().number});
}

void NotificationsTest::click()
{
    Service service;
    FreedesktopNotifications notifications(identity);
    int count = 0;
    notifications.post(u"update"_s, {u"Title"_s, {}, false, [&] {
                                         ++count;
                                     }});
    QTRY_COMPARE(service.seen.size(), 1);
    QCOMPARE(service.seen.first().actions.value(0), u"default"_s);
    QVERIFY(settle(notifications, service));
    Q_EMIT service.ActionInvoked(service.seen.first().number, u"default"_s);
    Q_EMIT service.ActionInvoked(service.seen.first().number, u"default"_s);
    QVERIFY(settle(notifications, service));
    QCOMPARE(count, 1);
}

void NotificationsTest::clicksThatAreNotOurs()
{
    Service service;
    FreedesktopNotifications notifications(identity);
    int count = 0;
    notifications.post(u"update"_s, {u"Title"_s, {}, false, [&] {
                                         ++count;
                                     }});
    QTRY_COMPARE(service.seen.size(), 1);
    QVERIFY(settle(notifications, service));
    const uint ours = service.seen.first().number;
    Q_EMIT service.ActionInvoked(ours + 1, u"default"_s);
    Q_EMIT service.ActionInvoked(0, u"default"_s);
    Q_EMIT service.ActionInvoked(ours, u"inline-reply"_s);
    Q_EMIT service.NotificationClosed(ours + 7, 2);
    QVERIFY(settle(notifications, service));
    QCOMPARE(count, 0);
}

void NotificationsTest::withoutAService()
{
    FreedesktopNotifications notifications(identity);
    for (int i = 0; i < 3; ++i) {
        notifications.post(u"mark"_s, {u"Title"_s});
    }
    notifications.withdraw(u"mark"_s);
    // When the bus has given up waiting for a service, nobody is told.
    Service service;
    QTRY_VERIFY([&] {
        notifications.post(u"other"_s, {u"Seen"_s});
        return QTest::qWaitFor([&] { return !service.seen.isEmpty(); }, 1000);
    }());
    QTRY_COMPARE(service.seen.last().title, u"Seen"_s);
}

void NotificationsTest::serviceThatComesLater()
{
    FreedesktopNotifications notifications(identity);
    Service service;
    notifications.post(u"mark"_s, {u"Title"_s});
    QTRY_COMPARE(service.seen.size(), 1);
}

void NotificationsTest::serviceThatIsReplaced()
{
    FreedesktopNotifications notifications(identity);
    {
        Service first(QStringList{u"body-markup"_s});
        notifications.post(u"mark"_s, {u"Title"_s, u"<b>"_s});
        QTRY_COMPARE(first.seen.size(), 1);
        QCOMPARE(first.seen.first().body, u"&lt;b&gt;"_s);
    }
    Service second;
    QTRY_VERIFY([&] {
        notifications.post(u"mark"_s, {u"Title"_s, u"<b>"_s});
        return QTest::qWaitFor([&] { return !second.seen.isEmpty(); }, 1000) &&
               second.seen.last().body == u"<b>"_s;
    }());
}

void NotificationsTest::fakeShowsReplacesAndWithdraws()
{
    FakeNotifications notifications;
    int count = 0;
    notifications.post(u"mark"_s, {u"First"_s});
    notifications.post(u"mark"_s, {u"Second"_s, {}, true, [&] {
                                       ++count;
                                   }});
    QCOMPARE(notifications.shown.size(), 1);
    QCOMPARE(notifications.posted.size(), 2);
    notifications.click(u"mark"_s);
    notifications.click(u"mark"_s);
    QCOMPARE(count, 1);
    notifications.post(u"mark"_s, {u"Third"_s});
    notifications.withdraw(u"mark"_s);
    QVERIFY(notifications.shown.isEmpty());
}

QTEST_MAIN(NotificationsTest)
#include "NotificationsTest.moc"
