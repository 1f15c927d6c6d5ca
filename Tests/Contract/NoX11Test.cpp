// SPDX-License-Identifier: MIT
// Without an X server the services of X11 desktops answer as an empty desktop does.
#include "Platform/Platform.h"
#include "Platform/Qt/QtScreens.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Platform.h"

#include <QTest>
#include <QWidget>

class NoX11Test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void connection();
    void recording();
    void overlay();
    void monitors();
    void popup();

private:
    Platform m_platform;
};

void NoX11Test::initTestCase()
{
    qunsetenv("DISPLAY");
    QVERIFY(!isX11Desktop());
    m_platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
    addX11Services(m_platform);
}

void NoX11Test::connection()
{
    const X11Connection connection;
    QVERIFY(!connection.isUsable());
    QVERIFY(!connection.isComposited());
    QCOMPARE(connection.atom("WM_STATE"), xcb_atom_t(XCB_ATOM_NONE));
    QVERIFY(connection.property(connection.root(), "_NET_SUPPORTED").isEmpty());
    QVERIFY(!connection.awaitEvent([](const xcb_generic_event_t &) { return true; },
                                   std::chrono::milliseconds(1)));
}

void NoX11Test::recording()
{
    QVERIFY(!m_platform.screenRecording->preflightAccess());
    QVERIFY(!m_platform.screenRecording->requestAccess());
    const Screen screen = m_platform.screens->screens().first();
    QVERIFY(
        m_platform.screenRecording->createImage(*screen.displayNumber, {0, 0, 10, 10}).isNull());
}

void NoX11Test::overlay()
{
    QWidget panel;
    const Screen screen = m_platform.screens->screens().first();
    QVERIFY(!m_platform.overlaySurface->cover(panel, screen));
    m_platform.overlaySurface->orderFront(panel);
    QVERIFY(panel.isVisible());
    m_platform.overlaySurface->makeKey(panel);
    m_platform.overlaySurface->orderOut(panel);
    QVERIFY(!panel.isVisible());
}

void NoX11Test::monitors()
{
    QVERIFY(!m_platform.eventMonitor->addGlobalMouseDownMonitor([](CocoaPoint) {}));
    QVERIFY(m_platform.eventMonitor->addResignActiveObserver([] {}));
}

void NoX11Test::popup()
{
    QWidget window;
    window.resize(300, 200);
    m_platform.popupPlacement->makeFloating(window);
    QCOMPARE(m_platform.popupPlacement->frameSize(window), (CocoaSize{300, 200}));
    m_platform.popupPlacement->setFrameOrigin(window, {20, 30});
    m_platform.popupPlacement->makeKeyAndOrderFront(window);
    QVERIFY(window.isVisible());
    QVERIFY(m_platform.popupPlacement->frame(window).size.width >= 300);
}

QTEST_MAIN(NoX11Test)
#include "NoX11Test.moc"
