// SPDX-License-Identifier: MIT
// A grab right after an overlay shows nothing of it, on the desktop at hand.
#include "Platform/Qt/QtScreens.h"
#include "Platform/X11/X11Platform.h"
#include "Support/Desktop.h"
#include "Support/Pattern.h"
#include "Support/TestOverlay.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QScreen>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class OverlayGrabTest : public QObject
{
    Q_OBJECT

private:
    Screen anyScreen();
    QRectF anyRect(const Screen &screen);
    QImage expected(const Screen &screen, const QRectF &rect) const;
    QImage grab(const Screen &screen, const QRectF &rect);
    /// Whether the last screen shows the dim, read by Qt: what we read is without the overlay.
    bool isDimSeen() const;
    /// Empty where the grab is what it has to be.
    QString wrong(const Screen &screen, const QRectF &rect, const QImage &image);

    Platform m_platform;
    double m_milliseconds = 0;
    std::unique_ptr<Peer> m_peer;
    QImage m_reference;
    // The same rectangles in every run.
    QRandomGenerator m_random{20};

private Q_SLOTS:
    void initTestCase();
    void overlayIsSeen();
    void quickGrabs();
    void grabsOfDimmedScreens();
    void wholeScreens();
    void secondSelection();
    void allPanelsShareOnePicture();
    void clippedToTheDisplay();
    void fractionsOfPoints();
    void nothingToGrab();
    void cleanupTestCase() { m_peer.reset(); }
};

void OverlayGrabTest::initTestCase()
{
    QVERIFY(isX11Desktop());
    m_platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
    addX11Services(m_platform);
    QVERIFY(m_platform.screenRecording->preflightAccess());
    QVERIFY(m_platform.screenRecording->requestAccess());

    // Out of the corners, where some window managers show something when it comes near.
    outputOf(u"xdotool"_s, {u"mousemove"_s, u"300"_s, u"500"_s});
    m_peer = std::make_unique<Peer>();
    m_peer->ask(u"background"_s);
    // It may be fading in.
    const auto isThere = [this] {
        m_reference = screenshot();
        return areAlike(m_reference, pattern(m_reference.size()));
    };
    QVERIFY(QTest::qWaitFor(isThere, testPatience));
}

Screen OverlayGrabTest::anyScreen()
{
    const QList<Screen> all = m_platform.screens->screens();
    return all.at(m_random.bounded(static_cast<int>(all.size())));
}

QRectF OverlayGrabTest::anyRect(const Screen &screen)
{
    const int width = m_random.bounded(3, screen.geometry.width());
    const int height = m_random.bounded(3, screen.geometry.height());
    const double x = m_random.bounded(screen.geometry.width() - width);
    const double y = m_random.bounded(screen.geometry.height() - height);
    return {x, y, double(width), double(height)};
}

QImage OverlayGrabTest::expected(const Screen &screen, const QRectF &rect) const
{
    const QSizeF scale = screen.scale();
    const QRect pixels = QRectF(rect.x() * scale.width(), rect.y() * scale.height(),
                                rect.width() * scale.width(), rect.height() * scale.height())
                             .toRect();
    return m_reference.copy(pixels.translated(screen.pixelGeometry.topLeft()));
}

QImage OverlayGrabTest::grab(const Screen &screen, const QRectF &rect)
{
    QElapsedTimer timer;
    timer.start();
    QImage image = m_platform.screenRecording->createImage(*screen.displayNumber, rect);
    m_milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    return image;
}

bool OverlayGrabTest::isDimSeen() const
{
    QScreen *screen = QGuiApplication::screens().last();
    const QPixmap seen =
        screen->grabWindow(0, screen->size().width() - 1, screen->size().height() - 1, 1, 1);
    const QPoint corner = m_platform.screens->screens().last().pixelGeometry.bottomRight();
    return qGray(seen.toImage().pixel(0, 0)) < qGray(m_reference.pixel(corner));
}

QString OverlayGrabTest::wrong(const Screen &screen, const QRectF &rect, const QImage &image)
{
    const QImage clean = expected(screen, rect);
    if (image.size() != clean.size()) {
        return u"%1x%2 instead of %3x%4"_s.arg(image.width())
            .arg(image.height())
            .arg(clean.width())
            .arg(clean.height());
    }
    if (image == clean) {
        return {};
    }
    int strayed = 0;
    QRect where;
    for (int y = 0; y < clean.height(); ++y) {
        for (int x = 0; x < clean.width(); ++x) {
            if (image.pixel(x, y) != clean.pixel(x, y)) {
                ++strayed;
                where |= QRect(x, y, 1, 1);
            }
        }
    }
    return u"%1 stray pixels within %2x%3+%4+%5 of %6x%7, after %8 ms"_s.arg(strayed)
        .arg(where.width())
        .arg(where.height())
        .arg(where.x())
        .arg(where.y())
        .arg(image.width())
        .arg(image.height())
        .arg(m_milliseconds);
}

void OverlayGrabTest::overlayIsSeen()
{
    // What the other tests look for would be there to be found.
    TestOverlay overlay(m_platform);
    QVERIFY(overlay.waitUntilPainted());
    for (const Screen &screen : m_platform.screens->screens()) {
        const QPoint corner = screen.pixelGeometry.bottomRight();
        QTRY_VERIFY2(qGray(screenshot().pixel(corner)) < qGray(m_reference.pixel(corner)),
                     "the dim reaches the last pixel");
    }
    overlay.orderOut();
    QTRY_VERIFY(areAlike(screenshot(), m_reference));
}

void OverlayGrabTest::quickGrabs()
{
    constexpr int cycles = 30;
    std::vector<qint64> microseconds;
    for (int cycle = 0; cycle < cycles; ++cycle) {
        TestOverlay overlay(m_platform);
        QVERIFY(overlay.waitUntilPainted());
        // From the first frame to a little later, also while a compositor is still fading in.
        QTest::qWait(m_random.bounded(60));
        const Screen screen = anyScreen();
        const QRectF rect = anyRect(screen);

        QElapsedTimer timer;
        timer.start();
        overlay.orderOut();
        const QImage image = grab(screen, rect);
        microseconds.push_back(timer.nsecsElapsed() / 1000);

        const QString problem = wrong(screen, rect, image);
        QVERIFY2(problem.isEmpty(), qPrintable(u"cycle %1: %2"_s.arg(cycle).arg(problem)));
    }
    std::sort(microseconds.begin(), microseconds.end());
    const auto part = [&](double share) {
        return static_cast<double>(microseconds[static_cast<std::size_t>(share * (cycles - 1))]) /
               1000;
    };
    qInfo("ordered out to grabbed: median %.1f ms, 95 %% within %.1f ms, longest %.1f ms",
          part(0.5), part(0.95), part(1));
}

void OverlayGrabTest::grabsOfDimmedScreens()
{
    // The dim has been on the screens for long: what a compositor shows is not our first frame.
    for (int cycle = 0; cycle < 5; ++cycle) {
        TestOverlay overlay(m_platform);
        QVERIFY(overlay.waitUntilPainted());
        QTRY_VERIFY(isDimSeen());
        for (const auto &panel : overlay.panels()) {
            panel->hole.moveLeft(200 + cycle);
            panel->update();
        }
        // In another phase of the repaint each time.
        QTest::qWait(10 * cycle);
        const Screen screen = anyScreen();
        const QRectF rect = anyRect(screen);
        overlay.orderOut();
        const QString problem = wrong(screen, rect, grab(screen, rect));
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

void OverlayGrabTest::wholeScreens()
{
    for (int cycle = 0; cycle < 10; ++cycle) {
        TestOverlay overlay(m_platform);
        QVERIFY(overlay.waitUntilPainted());
        const Screen screen = anyScreen();
        const QRectF rect(QPointF(), screen.geometry.size());
        overlay.orderOut();
        const QString problem = wrong(screen, rect, grab(screen, rect));
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

void OverlayGrabTest::secondSelection()
{
    for (int cycle = 0; cycle < 20; ++cycle) {
        TestOverlay first(m_platform);
        QVERIFY(first.waitUntilPainted());
        TestOverlay second(m_platform);
        QVERIFY(second.waitUntilPainted());
        const Screen screen = anyScreen();
        const QRectF rect = anyRect(screen);

        (cycle % 2 ? first : second).orderOut();
        QString problem = wrong(screen, rect, grab(screen, rect));
        QVERIFY2(problem.isEmpty(), qPrintable(u"first: "_s + problem));

        // The other one goes on, and is seen.
        const QPoint corner = screen.pixelGeometry.bottomRight();
        if (cycle < 2) {
            QTRY_VERIFY(qGray(screenshot().pixel(corner)) < qGray(m_reference.pixel(corner)));
        }
        (cycle % 2 ? second : first).orderOut();
        problem = wrong(screen, rect, grab(screen, rect));
        QVERIFY2(problem.isEmpty(), qPrintable(u"second: "_s + problem));
    }
}

void OverlayGrabTest::allPanelsShareOnePicture()
{
    TestOverlay first(m_platform);
    QVERIFY(first.waitUntilPainted());
    TestOverlay second(m_platform);
    QVERIFY(second.waitUntilPainted());
    const QList<Screen> screens = m_platform.screens->screens();
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const QPixmap &shown = first.panels()[std::size_t(i)]->backdrop;
        // Where the desktop shows through there is none.
        if (!shown.isNull()) {
            QCOMPARE(shown.toImage().size(), screens[i].pixelGeometry.size());
            QCOMPARE(second.panels()[std::size_t(i)]->backdrop.toImage().constBits(),
                     shown.toImage().constBits());
        }
    }
}

void OverlayGrabTest::clippedToTheDisplay()
{
    for (const Screen &screen : m_platform.screens->screens()) {
        const QSizeF size = screen.geometry.size();
        const QRectF beyond(size.width() - 50, size.height() - 40, 500, 500);
        const QRectF within(beyond.topLeft(), QSizeF(50, 40));
        const QString problem = wrong(screen, within, grab(screen, beyond));
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

void OverlayGrabTest::fractionsOfPoints()
{
    const Screen screen = m_platform.screens->screens().first();
    const QSizeF scale = screen.scale();
    // Whole pixels around what was asked for.
    const QRectF around(30 / scale.width(), 40 / scale.height(), 8 / scale.width(),
                        6 / scale.height());
    const QRectF rect = around.adjusted(0.3 / scale.width(), 0.3 / scale.height(),
                                        -0.3 / scale.width(), -0.3 / scale.height());
    const QImage image = grab(screen, rect);
    QCOMPARE(image.size(), QSize(8, 6));
    QVERIFY(areAlike(image, m_reference.copy(30, 40, 8, 6)));
}

void OverlayGrabTest::nothingToGrab()
{
    const Screen screen = m_platform.screens->screens().first();
    QVERIFY(grab(screen, {0, 0, 0, 10}).isNull());
    QVERIFY(grab(screen, {-50, -50, 40, 40}).isNull());
    QVERIFY(m_platform.screenRecording->createImage(999, {0, 0, 10, 10}).isNull());
}

QTEST_MAIN(OverlayGrabTest)
#include "OverlayGrabTest.moc"
