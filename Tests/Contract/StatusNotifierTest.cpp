// SPDX-License-Identifier: MIT
// The status item on the session bus, as a watcher and a host played by this test see it. They
// have connections of their own, so everything crosses the real bus.

#include "Platform/Freedesktop/StatusNotifierTypes.h"
#include "Platform/SystemSymbol.h"
#include "StatusNotifierFixture.h"

#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// A watcher with a host that is too busy to say so at first.
class BusyWatcher : public QDBusVirtualObject
{
public:
    BusyWatcher()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"busy"_s))
    {
        m_bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, this);
        m_bus.registerService(watcherName);
    }
    ~BusyWatcher() override { QDBusConnection::disconnectFromBus(u"busy"_s); }

    QStringList items;
    bool isAsked() const { return !m_questions.isEmpty(); }
    void answer()
    {
        for (const QDBusMessage &question : std::exchange(m_questions, {})) {
            m_bus.send(question.createReply(QVariant::fromValue(QDBusVariant(true))));
        }
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() == u"Get") {
            m_questions.append(message);
            return true;
        }
        if (message.member() != u"RegisterStatusNotifierItem") {
            return false;
        }
        items.append(message.arguments().constFirst().toString());
        m_bus.send(message.createReply());
        return true;
    }

private:
    QDBusConnection m_bus;
    QList<QDBusMessage> m_questions;
};

/// Counts the signals of items that arrive at a host.
class SignalCounter : public QObject
{
    Q_OBJECT

public:
    SignalCounter(QDBusConnection bus, const QString &service)
    {
        for (const char *name : {"NewIcon", "NewTitle", "NewToolTip"}) {
            bus.connect(service, u"/StatusNotifierItem"_s, itemInterface, QLatin1StringView(name),
                        this, SLOT(count(QDBusMessage)));
        }
    }
    QStringList names;

public Q_SLOTS:
    void count(const QDBusMessage &message) { names.append(message.member()); }
};

} // namespace

class StatusNotifierTest : public StatusNotifierFixture
{
    Q_OBJECT

private Q_SLOTS:
    void registersWithTheWatcher();
    void propertiesAreComplete();
    void changesAreAnnounced();
    void clicksReachTheAction();
    void hostIsAnsweredBeforeTheAction();
    void activationTokensAreKept();
    void watcherThatStartsLaterGetsTheItem();
    void busyWatcherGetsTheItem();
    void hostThatStartsLaterGetsTheItem();
    void restartedWatcherGetsTheItemAgain();
    void hostsShowToolTips();
    void shellOfGnomeShowsNoToolTips();
    void shellOfGnomeLacksAnExtension();
    void itemLeavesTheBus();
};

void StatusNotifierTest::registersWithTheWatcher()
{
    const Watcher watcher;
    QVERIFY(watcher.owns());
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    // GNOME's extension drops items with other names while it reads them.
    QVERIFY2(watcher.items().first().startsWith(u':'), qUtf8Printable(watcher.items().first()));
}

void StatusNotifierTest::propertiesAreComplete()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    QCOMPARE(watcher.property(u"Id"_s).toString(), u"org.example.Test"_s);
    QCOMPARE(watcher.property(u"Title"_s).toString(), u"Test"_s);
    QCOMPARE(watcher.property(u"Status"_s).toString(), u"Active"_s);
    QCOMPARE(watcher.property(u"Category"_s).toString(), u"ApplicationStatus"_s);
    QCOMPARE(watcher.property(u"IconAccessibleDesc"_s).toString(), u"Test"_s);
    QCOMPARE(watcher.property(u"ItemIsMenu"_s), QVariant(false));
    const auto toolTip =
        qdbus_cast<StatusNotifierToolTip>(watcher.property(u"ToolTip"_s).value<QDBusArgument>());
    QCOMPARE(toolTip.title, u"Test"_s);
    QCOMPARE(toolTip.description, u"tip &lt;b&gt;&amp;"_s); // markup is understood there

    const auto pixmaps = qdbus_cast<QList<StatusNotifierPixmap>>(
        watcher.property(u"IconPixmap"_s).value<QDBusArgument>());
    QCOMPARE(pixmaps.size(), 7);
    QCOMPARE(pixmaps.first().width, 16);
    QCOMPARE(pixmaps.first().bytes.size(), 16 * 16 * 4);
    QCOMPARE(pixmaps.first().bytes.at(0), '\xff'); // the first byte of a covered pixel is alpha
}

void StatusNotifierTest::changesAreAnnounced()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    SignalCounter host(watcher.bus(), watcher.items().first());
    watcher.property(u"Id"_s); // answered once the bus knows of the subscription

    m_button->setImage(systemSymbol(u"checkmark.circle.fill"_s, u"Copied"_s));
    QTRY_COMPARE(host.names, QStringList({u"NewTitle"_s, u"NewIcon"_s}));
    QCOMPARE(watcher.property(u"Title"_s).toString(), u"Test: Copied"_s);
    QCOMPARE(watcher.property(u"IconAccessibleDesc"_s).toString(), u"Copied"_s);
    host.names.clear();
    m_button->setToolTip(u"No text found"_s);
    QTRY_VERIFY(host.names.contains(u"NewToolTip"_s));
    QVERIFY(!host.names.contains(u"NewTitle"_s));
}

void StatusNotifierTest::clicksReachTheAction()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    using Type = StatusItemEvent::Type;
    const auto click = [&](const QString &method) {
        return watcher.ask(u"/StatusNotifierItem"_s, itemInterface, method, {5, 6}).type();
    };
    QCOMPARE(click(u"SecondaryActivate"_s), QDBusMessage::ReplyMessage);
    QCOMPARE(click(u"Activate"_s), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(m_clicks, QList<Type>({Type::LeftMouseUp}));
    QCOMPARE(click(u"ContextMenu"_s), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(m_clicks, QList<Type>({Type::LeftMouseUp, Type::RightMouseUp}));
    QCOMPARE(watcher.ask(u"/StatusNotifierItem"_s, itemInterface, u"Scroll"_s, {1, u"vertical"_s})
                 .type(),
             QDBusMessage::ReplyMessage);
    QCOMPARE(m_clicks.size(), 2);
}

void StatusNotifierTest::hostIsAnsweredBeforeTheAction()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    // What a click begins may block for long, such as a question for the permission.
    QSemaphore answered;
    std::optional<bool> wasAnswered;
    m_button->setAction(
        [&](const StatusItemEvent &) { wasAnswered = answered.tryAcquire(1, testPatience); });
    const std::unique_ptr<QThread> host(QThread::create([&, item = watcher.items().first()] {
        const QString name = u"waiting host"_s;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        QDBusMessage click = QDBusMessage::createMethodCall(item, u"/StatusNotifierItem"_s,
                                                            itemInterface, u"Activate"_s);
        click.setArguments({5, 6});
        if (bus.call(click).type() == QDBusMessage::ReplyMessage) {
            answered.release();
        }
        QDBusConnection::disconnectFromBus(name);
    }));
    host->start();
    QTRY_VERIFY(wasAnswered);
    QVERIFY(*wasAnswered);
    QVERIFY(host->wait());
}

void StatusNotifierTest::activationTokensAreKept()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    const auto provide = [&](const QVariant &token) {
        watcher.ask(u"/StatusNotifierItem"_s, itemInterface, u"ProvideXdgActivationToken"_s,
                    {token});
        return qgetenv("XDG_ACTIVATION_TOKEN");
    };
    QCOMPARE(provide(u"kwin-42"_s), "kwin-42");
    for (const QVariant &none : {QVariant(QString()), QVariant(u"two words"_s), QVariant(7),
                                 QVariant(u"Grün"_s), QVariant(QString(100'000, u'x'))}) {
        QCOMPARE(provide(none), "kwin-42");
    }
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void StatusNotifierTest::watcherThatStartsLaterGetsTheItem()
{
    makeItem();
    QVERIFY(m_button);
    const Watcher watcher;
    QTRY_COMPARE(watcher.items().size(), 1);
}

void StatusNotifierTest::busyWatcherGetsTheItem()
{
    BusyWatcher watcher;
    makeItem();
    QTRY_VERIFY(watcher.isAsked());
    // Longer than other panels are kept waiting for.
    QTest::qWait(2500);
    QVERIFY(watcher.items.isEmpty());
    watcher.answer();
    QTRY_COMPARE(watcher.items.size(), 1);
}

void StatusNotifierTest::hostThatStartsLaterGetsTheItem()
{
    Watcher watcher(false);
    makeItem();
    QTest::qWait(100); // time in which it must not register
    QCOMPARE(watcher.items().size(), 0);
    watcher.setHost(true);
    QTRY_COMPARE(watcher.items().size(), 1);
    watcher.setHost(false);
    QTRY_COMPARE(watcher.items().size(), 0);
}

void StatusNotifierTest::restartedWatcherGetsTheItemAgain()
{
    auto watcher = std::make_unique<Watcher>();
    makeItem();
    QTRY_COMPARE(watcher->items().size(), 1);
    for (int i = 0; i < 3; ++i) {
        watcher.reset();
        watcher = std::make_unique<Watcher>();
        QTRY_COMPARE(watcher->items().size(), 1);
        QCOMPARE(watcher->property(u"Title"_s).toString(), u"Test"_s);
    }
}

void StatusNotifierTest::hostsShowToolTips()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(m_bar->exposure().extent(), StatusItemExposure::Extent::ImageAndToolTip);
}

void StatusNotifierTest::shellOfGnomeShowsNoToolTips()
{
    const Watcher watcher;
    // Its extension is a part of it.
    QVERIFY(watcher.bus().registerService(u"org.gnome.Shell"_s));
    makeItem();
    QTRY_COMPARE(m_bar->exposure().extent(), StatusItemExposure::Extent::Image);
}

void StatusNotifierTest::shellOfGnomeLacksAnExtension()
{
    QDBusConnection shell = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"shell"_s);
    QVERIFY(shell.registerService(u"org.gnome.Shell"_s));
    makeItem();
    QTRY_COMPARE(m_bar->exposure().missingExtension(),
                 u"AppIndicator and KStatusNotifierItem Support"_s);
    QCOMPARE(m_bar->exposure().extent(), StatusItemExposure::Extent::Nothing);
    shell.unregisterService(u"org.gnome.Shell"_s);
    QDBusConnection::disconnectFromBus(u"shell"_s);
}

void StatusNotifierTest::itemLeavesTheBus()
{
    const Watcher watcher;
    makeItem();
    QTRY_COMPARE(watcher.items().size(), 1);
    m_item.reset();
    QTRY_COMPARE(watcher.items().size(), 0);
}

QTEST_MAIN(StatusNotifierTest)
#include "StatusNotifierTest.moc"
