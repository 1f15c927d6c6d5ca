// SPDX-License-Identifier: MIT
// Which of several kinds of panel gets the status item, and what its button does without one.

#include "Platform/Qt/PanelStatusBar.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Presence = StatusItemPanel::Presence;

class FakePanel : public StatusItemPanel
{
public:
    Presence presence() const override { return m_presence; }
    void setPresence(Presence presence)
    {
        m_presence = presence;
        Q_EMIT presenceChanged();
    }
    void show(const Content &content) override { shown.push_back(content); }
    void hide() override
    {
        shown.clear();
        ++hidden;
    }
    std::unique_ptr<QMenu> menu() const { return makeMenu(); }
    bool showsToolTips() const override { return toolTips; }
    QString missingExtension() const override { return extension; }

    bool toolTips = true;
    QString extension;
    std::vector<Content> shown;
    int hidden = 0;

private:
    Presence m_presence = Presence::Absent;
};

const StatusItemImage normal{u"normal"_s, "normal", {}};
const StatusItemImage mark{u"mark"_s, "mark", u"Copied"_s};

} // namespace

class PanelStatusBarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_first = m_second = nullptr;
        m_bar = std::make_unique<PanelStatusBar>([this] {
            PanelStatusBar::Panels panels;
            auto first = std::make_unique<FakePanel>();
            auto second = std::make_unique<FakePanel>();
            m_first = first.get();
            m_second = second.get();
            panels.push_back(std::move(first));
            panels.push_back(std::move(second));
            return panels;
        });
        m_item = m_bar->makeStatusItem();
        m_button = m_item->button();
    }

    void buttonWorksWithoutAPanel();
    void panelThatComesLaterGetsEverything();
    void changesReachThePanel();
    void firstPanelWins();
    void undecidedPanelIsWaitedFor();
    void undecidedPanelTakesNothingAway();
    void clicksReachTheAction();
    void actionMayReplaceItself();
    void panelGetsTheMenuOfARightClick();
    void exposureFollowsThePanels();
    void exposureIsToldOnce();
    void buttonOutlivesItsItem();
    void itemOutlivesItsBar();
    void poppedUpMenuIsDeletedOnceClosed();

private:
    std::unique_ptr<PanelStatusBar> m_bar;
    std::unique_ptr<StatusItem> m_item;
    std::shared_ptr<StatusItemButton> m_button;
    FakePanel *m_first = nullptr;
    FakePanel *m_second = nullptr;
};

void PanelStatusBarTest::buttonWorksWithoutAPanel()
{
    QVERIFY(m_button);
    m_button->setImage(normal);
    m_button->setToolTip(u"tip"_s);
    QCOMPARE(m_button->image(), normal);
    QCOMPARE(m_button->toolTip(), u"tip"_s);
}

void PanelStatusBarTest::panelThatComesLaterGetsEverything()
{
    m_button->setImage(normal);
    m_button->setToolTip(u"tip"_s);
    m_second->setPresence(Presence::Present);
    QCOMPARE(m_second->shown.size(), 1U);
    QCOMPARE(m_second->shown.back().image, normal);
    QCOMPARE(m_second->shown.back().toolTip, u"tip"_s);
}

void PanelStatusBarTest::changesReachThePanel()
{
    m_second->setPresence(Presence::Present);
    QVERIFY2(m_second->shown.empty(), "there is no picture yet");
    m_button->setImage(normal);
    m_button->setImage(mark);
    m_button->setToolTip(u"tip"_s);
    QCOMPARE(m_second->shown.size(), 3U);
    QCOMPARE(m_second->shown.back().image, mark);
    QCOMPARE(m_second->shown.back().toolTip, u"tip"_s);
}

void PanelStatusBarTest::firstPanelWins()
{
    m_button->setImage(normal);
    m_second->setPresence(Presence::Present);
    m_first->setPresence(Presence::Present);
    QCOMPARE(m_second->hidden, 1);
    QVERIFY(m_second->shown.empty());
    QCOMPARE(m_first->shown.size(), 1U);
    m_first->setPresence(Presence::Absent);
    QVERIFY(m_first->shown.empty());
    QCOMPARE(m_second->shown.size(), 1U);
    m_second->setPresence(Presence::Absent);
    QVERIFY(m_second->shown.empty());
}

void PanelStatusBarTest::undecidedPanelIsWaitedFor()
{
    m_button->setImage(normal);
    m_first->setPresence(Presence::Unknown);
    m_second->setPresence(Presence::Present);
    QVERIFY(m_second->shown.empty());
    m_first->setPresence(Presence::Absent);
    QCOMPARE(m_second->shown.size(), 1U);
}

void PanelStatusBarTest::undecidedPanelTakesNothingAway()
{
    m_button->setImage(normal);
    m_second->setPresence(Presence::Present);
    m_first->setPresence(Presence::Unknown);
    QCOMPARE(m_second->shown.size(), 1U);
}

void PanelStatusBarTest::clicksReachTheAction()
{
    QList<StatusItemEvent::Type> clicks;
    Q_EMIT m_first->clicked(StatusItemEvent::Type::LeftMouseUp);
    m_button->setAction([&](const StatusItemEvent &event) { clicks.append(event.type); });
    Q_EMIT m_first->clicked(StatusItemEvent::Type::LeftMouseUp);
    Q_EMIT m_second->clicked(StatusItemEvent::Type::RightMouseUp);
    QCOMPARE(clicks,
             QList({StatusItemEvent::Type::LeftMouseUp, StatusItemEvent::Type::RightMouseUp}));
}

void PanelStatusBarTest::actionMayReplaceItself()
{
    const auto text = std::make_shared<QString>(u"still here"_s);
    QString seen;
    m_button->setAction([&, text](const StatusItemEvent &) {
        m_button->setAction(nullptr);
        seen = *text;
    });
    Q_EMIT m_first->clicked(StatusItemEvent::Type::LeftMouseUp);
    QCOMPARE(seen, u"still here"_s);
    seen.clear();
    Q_EMIT m_first->clicked(StatusItemEvent::Type::LeftMouseUp);
    QVERIFY(seen.isEmpty());
}

void PanelStatusBarTest::panelGetsTheMenuOfARightClick()
{
    QVERIFY2(!m_first->menu(), "no action, no menu");
    m_button->setAction([this](const StatusItemEvent &event) {
        if (event.type == StatusItemEvent::Type::RightMouseUp) {
            auto menu = std::make_unique<QMenu>();
            menu->addAction(u"Quit"_s);
            m_button->popUpContextMenu(std::move(menu), event);
        }
    });
    const auto menu = m_first->menu();
    QVERIFY(menu);
    QCOMPARE(menu->actions().size(), 1);
    QVERIFY2(!menu->isVisible(), "the panel shows it, not we");
    QVERIFY2(m_second->menu(), "each time a new one");
}

void PanelStatusBarTest::exposureFollowsThePanels()
{
    using Extent = StatusItemExposure::Extent;
    const StatusItemExposure &exposure = m_bar->exposure();
    QCOMPARE(exposure.extent(), Extent::Nothing);
    m_second->setPresence(Presence::Present);
    QCOMPARE(exposure.extent(), Extent::ImageAndToolTip);
    m_first->toolTips = false;
    m_first->setPresence(Presence::Present);
    QCOMPARE(exposure.extent(), Extent::Image);
    m_first->extension = u"Extension"_s;
    m_first->setPresence(Presence::Absent);
    QCOMPARE(exposure.extent(), Extent::ImageAndToolTip);
    QCOMPARE(exposure.missingExtension(), QString());
    m_second->setPresence(Presence::Absent);
    QCOMPARE(exposure.extent(), Extent::Nothing);
    QCOMPARE(exposure.missingExtension(), u"Extension"_s);
}

void PanelStatusBarTest::exposureIsToldOnce()
{
    QSignalSpy changes(&m_bar->exposure(), &StatusItemExposure::changed);
    m_second->setPresence(Presence::Present);
    m_second->setPresence(Presence::Present);
    QCOMPARE(changes.count(), 1);
    m_second->setPresence(Presence::Absent);
    QCOMPARE(changes.count(), 2);
}

void PanelStatusBarTest::itemOutlivesItsBar()
{
    m_bar.reset();
    m_second->setPresence(Presence::Present);
    m_button->setImage(normal);
    QCOMPARE(m_second->shown.size(), 1U);
}

void PanelStatusBarTest::buttonOutlivesItsItem()
{
    m_button->setAction([](const StatusItemEvent &) { QFAIL("its item is gone"); });
    m_item.reset();
    m_button->setImage(mark);
    m_button->setToolTip(u"tip"_s);
    QCOMPARE(m_button->image(), mark);
}

void PanelStatusBarTest::poppedUpMenuIsDeletedOnceClosed()
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(u"Quit"_s);
    QMenu *shown = menu.get();
    QSignalSpy destroyed(shown, &QObject::destroyed);
    m_button->popUpContextMenu(std::move(menu), {StatusItemEvent::Type::RightMouseUp, {10, 10}});
    QTRY_VERIFY(shown->isVisible());
    QTest::keyClick(shown, Qt::Key_Escape);
    QTRY_COMPARE(destroyed.count(), 1);
}

QTEST_MAIN(PanelStatusBarTest)
#include "PanelStatusBarTest.moc"
