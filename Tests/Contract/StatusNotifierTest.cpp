// SPDX-License-Identifier: MIT
// The status item on the session bus, as a watcher and a host played by this test see it. They
// have connections of their own, so everything crosses the real bus.

#include "Platform/Freedesktop/MenuTypes.h"
#include "Platform/Freedesktop/StatusNotifierPanel.h"
#include "Platform/Freedesktop/StatusNotifierTypes.h"
#include "Platform/Qt/PanelStatusBar.h"
#include "Platform/SystemSymbol.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QMenu>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString itemInterface = u"org.kde.StatusNotifierItem"_s;
const QString menuInterface = u"com.canonical.dbusmenu"_s;

/// A panel's side: the watcher and, once `setHost` is called, a host.
class Watcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    explicit Watcher(bool hasHost = true)
        : m_name(u"watcher-%1"_s.arg(++count))
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
        , m_hasHost(hasHost)
    {
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllContents);
        m_owns = m_bus.registerService(watcherName);
    }
    ~Watcher() override { QDBusConnection::disconnectFromBus(m_name); }

    bool owns() const { return m_owns; }
    bool hasHost() const { return m_hasHost; }
    void setHost(bool hasHost)
    {
        m_hasHost = hasHost;
        if (hasHost) {
            Q_EMIT StatusNotifierHostRegistered();
        } else {
            Q_EMIT StatusNotifierHostUnregistered();
        }
    }
    QDBusConnection bus() const { return m_bus; }

    /// The registered items that are still on the bus.
    QStringList items() const
    {
        QStringList present;
        for (const QString &item : m_items) {
            if (m_bus.interface()->isServiceRegistered(item)) {
                present.append(item);
            }
        }
        return present;
    }

    /// What the item answers, the error's name if it is one.
    QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                     const QVariantList &arguments = {}) const
    {
        QDBusMessage call = QDBusMessage::createMethodCall(m_items.last(), path, interface, method);
        call.setArguments(arguments);
        const QDBusPendingCall pending = m_bus.asyncCall(call);
        // The item lives in this thread too.
        if (!QTest::qWaitFor([&] { return pending.isFinished(); }, testPatience)) {
            return {};
        }
        return pending.reply();
    }

    QVariant property(const QString &name) const
    {
        const QDBusMessage reply =
            ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                {itemInterface, name});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service) { m_items.append(service); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    static inline int count = 0;
    QString m_name;
    QDBusConnection m_bus;
    bool m_hasHost;
    bool m_owns = false;
    QStringList m_items;
};

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

const StatusItemImage normal{u"normal"_s,
                             R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 18 18">)"
                             R"(<path d="M1 1h16v16H1z"/></svg>)",
                             {}};

} // namespace

class StatusNotifierTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        registerStatusNotifierTypes();
        registerMenuTypes();
    }
    void init();
    void cleanup();

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
    void menuIsExported();
    void menuEntriesAreChosen();
    void menuIsMadeAnewEachTime();
    void hostileMenuCallsAreHarmless();

private:
    void makeItem();
    void addMenu();

    std::unique_ptr<PanelStatusBar> m_bar;
    std::unique_ptr<StatusItem> m_item;
    std::shared_ptr<StatusItemButton> m_button;
    std::shared_ptr<PanelMenu> m_panelMenu = std::make_shared<PanelMenu>();
    QList<StatusItemEvent::Type> m_clicks;
    QStringList m_chosen;
    QList<bool> m_wasLeaving;
    QStringList m_titles{u"Capture _Text & more"_s, u"Quit"_s};
};

void StatusNotifierTest::init()
{
    m_clicks.clear();
    m_chosen.clear();
    m_wasLeaving.clear();
    m_titles = {u"Capture _Text && &more"_s, {}, u"Quit"_s};
}

void StatusNotifierTest::cleanup()
{
    m_button.reset();
    m_item.reset();
}

void StatusNotifierTest::makeItem()
{
    m_bar = std::make_unique<PanelStatusBar>([this] {
        PanelStatusBar::Panels panels;
        panels.push_back(std::make_unique<StatusNotifierPanel>(
            StatusNotifierPanel::Identity{u"org.example.Test"_s, u"Test"_s},
            StatusItemArtwork(u"/nowhere"_s), m_panelMenu));
        return panels;
    });
    m_item = m_bar->makeStatusItem();
    m_button = m_item->button();
    m_button->setImage(normal);
    m_button->setToolTip(u"tip <b>&"_s);
    m_button->setAction([this](const StatusItemEvent &event) { m_clicks.append(event.type); });
}

void StatusNotifierTest::addMenu()
{
    m_button->setAction([this](const StatusItemEvent &event) {
        auto menu = std::make_unique<QMenu>();
        for (const QString &title : std::as_const(m_titles)) {
            if (title.isEmpty()) {
                menu->addSeparator();
            } else {
                menu->addAction(title, this, [this, title] {
                    m_chosen.append(title);
                    m_wasLeaving.append(m_panelMenu->isLeaving());
                });
            }
        }
        menu->actions().constLast()->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
        m_button->popUpContextMenu(std::move(menu), event);
    });
}

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

void StatusNotifierTest::menuIsExported()
{
    const Watcher watcher;
    makeItem();
    addMenu();
    QTRY_COMPARE(watcher.items().size(), 1);
    const QString path = watcher.property(u"Menu"_s).value<QDBusObjectPath>().path();
    const QDBusMessage reply =
        watcher.ask(path, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});
    QCOMPARE(reply.signature(), u"u(ia{sv}av)"_s);
    const auto layout = qdbus_cast<MenuLayout>(reply.arguments().at(1).value<QDBusArgument>());
    QCOMPARE(layout.properties.value(u"children-display"_s), QVariant(u"submenu"_s));
    QCOMPARE(layout.children.size(), 3);
    QVariantList labels;
    for (const QDBusVariant &child : layout.children) {
        const auto entry = qdbus_cast<MenuLayout>(child.variant().value<QDBusArgument>());
        labels.append(entry.properties.value(u"label"_s, entry.properties.value(u"type"_s)));
    }
    const auto last =
        qdbus_cast<MenuLayout>(layout.children.last().variant().value<QDBusArgument>());
    QCOMPARE(
        qdbus_cast<QList<QStringList>>(last.properties.value(u"shortcut"_s).value<QDBusArgument>()),
        QList<QStringList>({{u"Control"_s, u"q"_s}}));
    QCOMPARE(labels, QVariantList({u"Capture __Text & _more"_s, u"separator"_s, u"Quit"_s}));
    QVERIFY2(m_chosen.isEmpty(), "looking at a menu chooses nothing");
}

void StatusNotifierTest::menuEntriesAreChosen()
{
    const Watcher watcher;
    makeItem();
    addMenu();
    QTRY_COMPARE(watcher.items().size(), 1);
    const QString path = watcher.property(u"Menu"_s).value<QDBusObjectPath>().path();
    watcher.ask(path, menuInterface, u"AboutToShow"_s, {0});
    const QVariant none = QVariant::fromValue(QDBusVariant(0));
    watcher.ask(path, menuInterface, u"Event"_s, {3, u"hovered"_s, none, 0U});
    watcher.ask(path, menuInterface, u"Event"_s, {3, u"clicked"_s, none, 0U});
    QTRY_COMPARE(m_chosen, QStringList({m_titles[2]}));
    const QList<MenuEvent> events{{1, u"clicked"_s, QDBusVariant(0), 0}};
    QCOMPARE(
        watcher.ask(path, menuInterface, u"EventGroup"_s, {QVariant::fromValue(events)}).type(),
        QDBusMessage::ReplyMessage);
    QTRY_COMPARE(m_chosen, QStringList({m_titles[2], m_titles[0]}));
    QCOMPARE(m_wasLeaving, QList<bool>({true, true}));
    QVERIFY(!m_panelMenu->isLeaving());
}

void StatusNotifierTest::menuIsMadeAnewEachTime()
{
    const Watcher watcher;
    makeItem();
    addMenu();
    QTRY_COMPARE(watcher.items().size(), 1);
    const QString path = watcher.property(u"Menu"_s).value<QDBusObjectPath>().path();
    const auto isNew = [&] {
        return watcher.ask(path, menuInterface, u"AboutToShow"_s, {0}).arguments().value(0);
    };
    QCOMPARE(isNew(), QVariant(true));
    QCOMPARE(isNew(), QVariant(false));
    m_titles.append(u"One more"_s);
    QCOMPARE(isNew(), QVariant(true));
    const QDBusMessage reply =
        watcher.ask(path, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});
    const auto layout = qdbus_cast<MenuLayout>(reply.arguments().at(1).value<QDBusArgument>());
    QCOMPARE(layout.children.size(), 4);
}

void StatusNotifierTest::hostileMenuCallsAreHarmless()
{
    const Watcher watcher;
    makeItem();
    addMenu();
    QTRY_COMPARE(watcher.items().size(), 1);
    const QString path = watcher.property(u"Menu"_s).value<QDBusObjectPath>().path();
    const QVariant none = QVariant::fromValue(QDBusVariant(0));
    for (const int id : {-1, 0, 2, 4, 1 << 30, -(1 << 30)}) {
        watcher.ask(path, menuInterface, u"GetLayout"_s, {id, 1, QStringList()});
        watcher.ask(path, menuInterface, u"GetProperty"_s, {id, u"label"_s});
        watcher.ask(path, menuInterface, u"AboutToShow"_s, {id});
        QCOMPARE(watcher.ask(path, menuInterface, u"Event"_s, {id, u"clicked"_s, none, 0U}).type(),
                 QDBusMessage::ReplyMessage);
    }
    watcher.ask(path, menuInterface, u"Event"_s, {1, u"clicked"_s, none, 0U});
    QTRY_COMPARE(m_chosen, QStringList({m_titles[0]}));
}

QTEST_MAIN(StatusNotifierTest)
#include "StatusNotifierTest.moc"
