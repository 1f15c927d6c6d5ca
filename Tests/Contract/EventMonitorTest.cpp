// SPDX-License-Identifier: MIT
// Presses in other programs' windows are told, with their place; those in ours are not.
#include "Platform/Platform.h"
#include "Platform/Qt/QtScreens.h"
#include "Platform/X11/X11Platform.h"
#include "Support/Desktop.h"

#include <QCursor>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

class EventMonitorTest : public QObject
{
    Q_OBJECT

private:
    static void click(QPoint pixels, int button);

    Platform m_platform;
    std::unique_ptr<Peer> m_peer;
    std::vector<CocoaPoint> m_told;

private Q_SLOTS:
    void initTestCase();
    void init() { m_told.clear(); }
    void pressInAnotherProgram();
    void otherButtons();
    void pressInOurWindow();
    void pressWhileAnotherProgramHasThePointer();
    void handlerEndsItsMonitor();
    void cleanupTestCase() { m_peer.reset(); }
};

void EventMonitorTest::initTestCase()
{
    QVERIFY(isX11Desktop());
    m_platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
    addX11Services(m_platform);
    m_peer = std::make_unique<Peer>();
    m_peer->showWindow({600, 300, 300, 200});
}

void EventMonitorTest::click(QPoint pixels, int button)
{
    outputOf(u"xdotool"_s, {u"mousemove"_s, QString::number(pixels.x()),
                            QString::number(pixels.y()), u"click"_s, QString::number(button)});
    // As in life, the pointer stays where it is until the press has been told. The server has dealt
    // with the press when xdotool ends, and has written of it to us when it answers a question.
    QCursor::pos();
    QTest::qWait(1);
}

void EventMonitorTest::pressInAnotherProgram()
{
    const auto monitor = m_platform.eventMonitor->addGlobalMouseDownMonitor(
        [this](CocoaPoint point) { m_told.push_back(point); });
    QVERIFY(monitor);
    for (const int button : {1, 3}) {
        m_told.clear();
        click({700, 400}, button);
        QTRY_COMPARE(m_told.size(), std::size_t(1));
        const Screen screen = m_platform.screens->screens().first();
        QCOMPARE(m_told.front().x, 700 / screen.scale().width());
        QCOMPARE(m_told.front().y, screen.frame.size.height - 400 / screen.scale().height());
        QVERIFY(m_peer->says(u"press 700 400"_s));
    }
}

void EventMonitorTest::otherButtons()
{
    const auto monitor = m_platform.eventMonitor->addGlobalMouseDownMonitor(
        [this](CocoaPoint point) { m_told.push_back(point); });
    click({700, 400}, 2);
    click({700, 400}, 4);
    // Both are in the past once this one is told.
    click({710, 410}, 1);
    QTRY_COMPARE(m_told.size(), std::size_t(1));
    QCOMPARE(m_told.front().x, 710 / m_platform.screens->screens().first().scale().width());
}

void EventMonitorTest::pressInOurWindow()
{
    QWidget window;
    m_platform.popupPlacement->makeFloating(window);
    window.resize(200, 150);
    m_platform.popupPlacement->setFrameOrigin(window, {20, 200});
    m_platform.popupPlacement->makeKeyAndOrderFront(window);
    QVERIFY(QTest::qWaitForWindowActive(&window, testPatience));
    const auto monitor = m_platform.eventMonitor->addGlobalMouseDownMonitor(
        [this](CocoaPoint point) { m_told.push_back(point); });

    const Screens &screens = *m_platform.screens;
    const CocoaRect frame = m_platform.popupPlacement->frame(window);
    click(screens.toPixels({frame.midX(), frame.midY()}).toPoint(), 1);
    if (frame.size.height > 150) {
        // The title bar belongs to it, although the window manager made it.
        click(screens.toPixels({frame.midX(), frame.maxY() - 8}).toPoint(), 1);
    }
    click({700, 400}, 1);
    QTRY_COMPARE(m_told.size(), std::size_t(1));
    QCOMPARE(m_told.front(), screens.fromPixels({700, 400}));
}

void EventMonitorTest::pressWhileAnotherProgramHasThePointer()
{
    const auto monitor = m_platform.eventMonitor->addGlobalMouseDownMonitor(
        [this](CocoaPoint point) { m_told.push_back(point); });
    m_peer->ask(u"grab"_s);
    click({700, 400}, 1);
    QTRY_COMPARE(m_told.size(), std::size_t(1));
    m_peer->ask(u"ungrab"_s);
}

void EventMonitorTest::handlerEndsItsMonitor()
{
    std::unique_ptr<EventMonitor::Monitor> monitor;
    monitor = m_platform.eventMonitor->addGlobalMouseDownMonitor([&](CocoaPoint point) {
        m_told.push_back(point);
        monitor.reset();
    });
    click({700, 400}, 1);
    QTRY_COMPARE(m_told.size(), std::size_t(1));
    QVERIFY(!monitor);
    // What another monitor has been told of, the one that ended would have been too.
    int witnessed = 0;
    const auto witness =
        m_platform.eventMonitor->addGlobalMouseDownMonitor([&](CocoaPoint) { ++witnessed; });
    click({700, 400}, 1);
    QTRY_COMPARE(witnessed, 1);
    QCOMPARE(m_told.size(), std::size_t(1));
}

QTEST_MAIN(EventMonitorTest)
#include "EventMonitorTest.moc"
