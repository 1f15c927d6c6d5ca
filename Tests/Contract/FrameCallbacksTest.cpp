// SPDX-License-Identifier: MIT
// Windows that are hidden while the compositor answers a frame: see FrameCallbacks.cpp.

#include "Platform/Wayland/QtWayland.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QPainter>
#include <QRasterWindow>
#include <QTest>
#include <QThread>
#include <QVersionNumber>

#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <wayland-client.h>

namespace {
std::atomic<int> onMainThread = 0;
std::atomic<int> elsewhere = 0;

class Painted : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(0, 0, width(), height(), QColor::fromRgb(m_color++ & 0xFFFFFF));
    }

private:
    QRgb m_color = 0;
};
} // namespace

/// Counts the callbacks that Qt destroys, on their way to libwayland.
extern "C" __attribute__((visibility("default"))) void wl_proxy_destroy(wl_proxy *proxy)
{
    static const auto destroy =
        reinterpret_cast<decltype(&wl_proxy_destroy)>(dlsym(RTLD_NEXT, "wl_proxy_destroy"));
    if (qApp && std::strcmp(wl_proxy_get_class(proxy), "wl_callback") == 0) {
        ++(QThread::currentThread() == qApp->thread() ? onMainThread : elsewhere);
    }
    destroy(proxy);
}

class FrameCallbacksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void comeOnTheMainThread();
    void windowsHiddenBetweenFrames();
};

void FrameCallbacksTest::initTestCase()
{
    if (QLibraryInfo::version() >= QVersionNumber(6, 8)) {
        QSKIP("Qt's own thread does no harm here.");
    }
}

void FrameCallbacksTest::comeOnTheMainThread()
{
    QVERIFY(qtWaylandDisplay());
    Painted window;
    window.resize(200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, testPatience));
    onMainThread = 0;
    elsewhere = 0;
    // Each update waits for the frame before.
    constexpr int frames = 5;
    QTRY_VERIFY((window.update(), onMainThread + elsewhere >= frames));
    QCOMPARE(elsewhere.load(), 0);
}

void FrameCallbacksTest::windowsHiddenBetweenFrames()
{
    constexpr int windows = 20;
    for (int i = 0; i < windows; ++i) {
        Painted window;
        window.resize(200, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, testPatience));
        window.update();
    }
    QCOMPARE(elsewhere.load(), 0);
}

QTEST_MAIN(FrameCallbacksTest)
#include "FrameCallbacksTest.moc"
