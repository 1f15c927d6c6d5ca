// SPDX-License-Identifier: MIT
// The status item's menu on the session bus, as a host played by this test sees it.

#include "Platform/Freedesktop/MenuTypes.h"
#include "StatusNotifierFixture.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QString menuInterface = u"com.canonical.dbusmenu"_s;
} // namespace

class StatusNotifierMenuTest : public StatusNotifierFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void menuIsExported();
    void menuEntriesAreChosen();
    void menuIsMadeAnewEachTime();
    void hostileMenuCallsAreHarmless();

private:
    void addMenu();

    QStringList m_chosen;
    QList<bool> m_wasLeaving;
    QStringList m_titles;
};

void StatusNotifierMenuTest::init()
{
    m_chosen.clear();
    m_wasLeaving.clear();
    m_titles = {u"Capture _Text && &more"_s, {}, u"Quit"_s};
}

void StatusNotifierMenuTest::addMenu()
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

void StatusNotifierMenuTest::menuIsExported()
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

void StatusNotifierMenuTest::menuEntriesAreChosen()
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

void StatusNotifierMenuTest::menuIsMadeAnewEachTime()
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

void StatusNotifierMenuTest::hostileMenuCallsAreHarmless()
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

QTEST_MAIN(StatusNotifierMenuTest)
#include "StatusNotifierMenuTest.moc"
