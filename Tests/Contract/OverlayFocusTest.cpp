// SPDX-License-Identifier: MIT
// An overlay has the keyboard at once, gives it back, and tells when another program takes it.
#include "Platform/Qt/QtScreens.h"
#include "Platform/X11/X11Platform.h"
#include "Support/Desktop.h"
#include "Support/TestOverlay.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
/// In which nothing must happen, in milliseconds: longer than the tenth of a second after which Qt
/// takes the loss of the keyboard for final.
constexpr int quiet = 300;
} // namespace

class OverlayFocusTest : public QObject
{
    Q_OBJECT

private:
    /// The keys that reached the panels.
    static void collectKeys(const TestOverlay &overlay, QList<int> &keys);

    Platform m_platform;
    std::unique_ptr<Peer> m_peer;

private Q_SLOTS:
    void initTestCase();
    void init();
    void keysReachTheOverlayAtOnce();
    void keysReachTheOverlayLater();
    void keyboardGoesBack();
    void keyboardGoesToTheOtherSelection();
    void coversEveryPixel();
    void keyboardStaysWhenTheWindowManagerIsLate();
    void deactivation();
    void noDeactivationAmongOwnWindows();
    void grabbedKeysAreNoDeactivation();
    void cleanupTestCase() { m_peer.reset(); }
};

void OverlayFocusTest::initTestCase()
{
    QVERIFY(isX11Desktop());
    m_platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
    addX11Services(m_platform);
    m_peer = std::make_unique<Peer>();
    m_peer->showWindow({200, 200, 400, 300});
}

void OverlayFocusTest::init()
{
    // Each test begins with another program in front.
    m_peer->activate();
    QTRY_VERIFY(QGuiApplication::focusWindow() == nullptr);
    outputOf(u"xdotool"_s, {u"key"_s, u"a"_s});
    QVERIFY(m_peer->says(u"key a"_s));
}

void OverlayFocusTest::collectKeys(const TestOverlay &overlay, QList<int> &keys)
{
    for (const auto &panel : overlay.panels()) {
        connect(panel.get(), &TestPanel::keyPressed, panel.get(),
                [&keys](int key) { keys.append(key); });
    }
}

void OverlayFocusTest::keysReachTheOverlayAtOnce()
{
    for (int cycle = 0; cycle < 10; ++cycle) {
        QList<int> keys;
        TestOverlay overlay(m_platform);
        collectKeys(overlay, keys);
        // Before our event loop has run even once.
        outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
        QTRY_COMPARE(keys, QList<int>{Qt::Key_Escape});
    }
}

void OverlayFocusTest::keysReachTheOverlayLater()
{
    // Window managers may answer the loss of the keyboard after a while.
    QList<int> keys;
    TestOverlay overlay(m_platform);
    collectKeys(overlay, keys);
    QVERIFY(overlay.waitUntilPainted());
    for (int count = 1; count <= 5; ++count) {
        QTest::qWait(100);
        outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
        QTRY_COMPARE(keys.size(), count);
    }
    QTRY_VERIFY(overlay.panels().back()->isActiveWindow());
}

void OverlayFocusTest::keyboardGoesBack()
{
    TestOverlay overlay(m_platform);
    QVERIFY(overlay.waitUntilPainted());
    overlay.orderOut();
    outputOf(u"xdotool"_s, {u"key"_s, u"b"_s});
    QVERIFY(m_peer->says(u"key b"_s));
}

void OverlayFocusTest::keyboardGoesToTheOtherSelection()
{
    QList<int> keys;
    TestOverlay first(m_platform);
    collectKeys(first, keys);
    QVERIFY(first.waitUntilPainted());
    int resigned = 0;
    const auto observer =
        m_platform.eventMonitor->addResignActiveObserver([&resigned] { ++resigned; });
    {
        TestOverlay second(m_platform);
        QVERIFY(second.waitUntilPainted());
    }
    outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
    QTRY_COMPARE(keys, QList<int>{Qt::Key_Escape});
    QCOMPARE(resigned, 0);
}

void OverlayFocusTest::coversEveryPixel()
{
    TestOverlay overlay(m_platform);
    QVERIFY(overlay.waitUntilPainted());
    const QList<Screen> screens = m_platform.screens->screens();
    QCOMPARE(static_cast<qsizetype>(overlay.panels().size()), screens.size());
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const QString told =
            outputOf(u"xdotool"_s,
                     {u"getwindowgeometry"_s, u"--shell"_s,
                      QString::number(overlay.panels()[static_cast<std::size_t>(i)]->winId())});
        const QRect pixels = screens[i].pixelGeometry;
        for (const QString &line :
             {u"X=%1\n"_s.arg(pixels.x()), u"Y=%1\n"_s.arg(pixels.y()),
              u"WIDTH=%1\n"_s.arg(pixels.width()), u"HEIGHT=%1\n"_s.arg(pixels.height())}) {
            QVERIFY2(told.contains(line), qPrintable(told + line));
        }
    }
}

void OverlayFocusTest::keyboardStaysWhenTheWindowManagerIsLate()
{
    if (qEnvironmentVariable("VELLORA_DESKTOP") == "none"_L1) {
        QSKIP("there is no window manager");
    }
    // Outlives the panels, which may be told of a key until they are deleted.
    QList<int> keys;
    for (int cycle = 0; cycle < 10; ++cycle) {
        // The window manager has dealt with the panels' end, as it has between two captures.
        init();
        m_peer->move({210 + cycle, 230});
        // As a click outside the result window closes it, and starts a capture.
        auto window = std::make_unique<QWidget>();
        window->resize(200, 100);
        m_platform.popupPlacement->makeKeyAndOrderFront(*window);
        QVERIFY(QTest::qWaitForWindowActive(window.get(), testPatience));
        window.reset();

        int resigned = 0;
        TestOverlay overlay(m_platform);
        keys.clear();
        collectKeys(overlay, keys);
        const auto observer =
            m_platform.eventMonitor->addResignActiveObserver([&resigned] { ++resigned; });
        // The window manager has answered once it does what it is asked for later.
        m_peer->move({210 + cycle, 210});
        QVERIFY(overlay.waitUntilPainted());
        // Until we have noticed, keys go astray.
        const auto isKeyTold = [&keys] {
            outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
            return QTest::qWaitFor([&keys] { return !keys.isEmpty(); }, 100);
        };
        QVERIFY(QTest::qWaitFor(isKeyTold, testPatience));
        QCOMPARE(resigned, 0);
    }
}

void OverlayFocusTest::deactivation()
{
    int resigned = 0;
    TestOverlay overlay(m_platform);
    const auto observer =
        m_platform.eventMonitor->addResignActiveObserver([&resigned] { ++resigned; });
    QVERIFY(overlay.waitUntilPainted());
    QTRY_VERIFY(overlay.panels().back()->isActiveWindow());
    QTest::qWait(quiet);
    QCOMPARE(resigned, 0);

    QElapsedTimer timer;
    timer.start();
    m_peer->takeKeyboard();
    QTRY_COMPARE(resigned, 1);
    qInfo("told of deactivation within %lld ms", static_cast<long long>(timer.elapsed()));
    // Ordering out does not take the keyboard away from who has it now.
    overlay.orderOut();
    outputOf(u"xdotool"_s, {u"key"_s, u"c"_s});
    QVERIFY(m_peer->says(u"key c"_s));
    QCOMPARE(resigned, 1);
}

void OverlayFocusTest::noDeactivationAmongOwnWindows()
{
    int resigned = 0;
    const auto observer =
        m_platform.eventMonitor->addResignActiveObserver([&resigned] { ++resigned; });
    // We have not had the keyboard yet.
    m_peer->activate();
    QTest::qWait(quiet);
    QCOMPARE(resigned, 0);

    TestOverlay overlay(m_platform);
    QVERIFY(overlay.waitUntilPainted());
    for (const auto &panel : overlay.panels()) {
        m_platform.overlaySurface->makeKey(*panel);
        QTRY_VERIFY(panel->isActiveWindow());
    }
    QTest::qWait(quiet);
    QCOMPARE(resigned, 0);
}

void OverlayFocusTest::grabbedKeysAreNoDeactivation()
{
    int resigned = 0;
    TestOverlay overlay(m_platform);
    QVERIFY(overlay.waitUntilPainted());
    const auto observer =
        m_platform.eventMonitor->addResignActiveObserver([&resigned] { ++resigned; });
    m_peer->ask(u"grab"_s);
    QTest::qWait(quiet);
    m_peer->ask(u"ungrab"_s);
    QTest::qWait(quiet);
    QCOMPARE(resigned, 0);
    // And nothing of it stays behind.
    m_peer->takeKeyboard();
    QTRY_COMPARE(resigned, 1);
}

QTEST_MAIN(OverlayFocusTest)
#include "OverlayFocusTest.moc"
