// SPDX-License-Identifier: MIT
#include "ScreenCapture.h"

#include "Support/FakePlatform.h"

#include <QTest>

#include <limits>

/// Which display is asked for a rectangle, and what rectangle of it.
class ScreenCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void convertsToTheDisplaysTopLeftCoordinates_data();
    void convertsToTheDisplaysTopLeftCoordinates();
    void choosesTheDisplay_data();
    void choosesTheDisplay();
    void asksNobodyForNothing_data();
    void asksNobodyForNothing();
    void fallsBackToTheMainScreen();
    void fails_data();
    void fails();

private:
    std::unique_ptr<FakePlatform> m_platform;
};

void ScreenCaptureTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
}

void ScreenCaptureTest::convertsToTheDisplaysTopLeftCoordinates_data()
{
    QTest::addColumn<CocoaRect>("frame");
    QTest::addColumn<CocoaRect>("rect");
    QTest::addColumn<QRectF>("displayRect");
    QTest::newRow("primary") << CocoaRect{{0, 0}, {1600, 1000}} << CocoaRect{{100, 700}, {200, 50}}
                             << QRectF(100, 250, 200, 50);
    QTest::newRow("left of and above the primary's lower edge")
        << CocoaRect{{-1440, 200}, {1440, 900}} << CocoaRect{{-1400, 1000}, {100, 40}}
        << QRectF(40, 60, 100, 40);
    QTest::newRow("fractions are kept")
        << CocoaRect{{0, 0}, {1600, 1000}} << CocoaRect{{10.25, 20.5}, {30.125, 40.75}}
        << QRectF(10.25, 938.75, 30.125, 40.75);
}

void ScreenCaptureTest::convertsToTheDisplaysTopLeftCoordinates()
{
    QFETCH(CocoaRect, frame);
    QFETCH(CocoaRect, rect);
    QFETCH(QRectF, displayRect);
    m_platform->screens.list = {FakeScreens::screen(7, frame, 1000)};
    QCOMPARE(ScreenCapture::capture(rect).size(), QSize(100, 50));
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QCOMPARE(m_platform->screenRecording.grabs[0].display, 7U);
    QCOMPARE(m_platform->screenRecording.grabs[0].rect, displayRect);
}

void ScreenCaptureTest::choosesTheDisplay_data()
{
    QTest::addColumn<CocoaRect>("rect");
    QTest::addColumn<quint32>("display");
    QTest::addColumn<QRectF>("displayRect");
    QTest::newRow("wholly on the second")
        << CocoaRect{{1100, 100}, {50, 50}} << 2U << QRectF(100, 850, 50, 50);
    QTest::newRow("60 % on the second, unclipped")
        << CocoaRect{{960, 0}, {100, 1000}} << 2U << QRectF(-40, 0, 100, 1000);
    QTest::newRow("half on each: the first")
        << CocoaRect{{950, 0}, {100, 1000}} << 1U << QRectF(950, 0, 100, 1000);
    QTest::newRow("on none: the first")
        << CocoaRect{{5000, 5000}, {10, 10}} << 1U << QRectF(5000, -4010, 10, 10);
}

void ScreenCaptureTest::choosesTheDisplay()
{
    QFETCH(CocoaRect, rect);
    QFETCH(quint32, display);
    QFETCH(QRectF, displayRect);
    m_platform->screens.list = {FakeScreens::screen(1, {{0, 0}, {1000, 1000}}, 1000),
                                FakeScreens::screen(2, {{1000, 0}, {1000, 1000}}, 1000)};
    ScreenCapture::capture(rect);
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QCOMPARE(m_platform->screenRecording.grabs[0].display, display);
    QCOMPARE(m_platform->screenRecording.grabs[0].rect, displayRect);
}

void ScreenCaptureTest::asksNobodyForNothing_data()
{
    QTest::addColumn<CocoaRect>("rect");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("no width") << CocoaRect{{10, 10}, {0, 50}};
    QTest::newRow("no height") << CocoaRect{{10, 10}, {50, 0}};
    QTest::newRow("negative") << CocoaRect{{10, 10}, {-5, 50}};
    QTest::newRow("width not a number") << CocoaRect{{10, 10}, {nan, 50}};
    QTest::newRow("height not a number") << CocoaRect{{10, 10}, {50, nan}};
}

void ScreenCaptureTest::asksNobodyForNothing()
{
    QFETCH(CocoaRect, rect);
    QVERIFY(ScreenCapture::capture(rect).isNull());
    QVERIFY(m_platform->screenRecording.grabs.isEmpty());
}

void ScreenCaptureTest::fallsBackToTheMainScreen()
{
    m_platform->screens.main = FakeScreens::screen(9, {{0, 0}, {1000, 1000}}, 1000);
    m_platform->screens.list.clear();
    ScreenCapture::capture({{0, 0}, {10, 10}});
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QCOMPARE(m_platform->screenRecording.grabs[0].display, 9U);
}

void ScreenCaptureTest::fails_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("no screens at all") << QStringLiteral("screens");
    QTest::newRow("a screen without a display number") << QStringLiteral("number");
    QTest::newRow("the grab fails") << QStringLiteral("grab");
}

void ScreenCaptureTest::fails()
{
    QFETCH(QString, reason);
    if (reason == u"screens") {
        m_platform->screens.list.clear();
        m_platform->screens.main.reset();
    } else if (reason == u"number") {
        m_platform->screens.list[0].displayNumber.reset();
    } else {
        m_platform->screenRecording.nextImage = QImage();
    }
    QVERIFY(ScreenCapture::capture({{0, 0}, {10, 10}}).isNull());
    QCOMPARE(m_platform->screenRecording.grabs.size(), reason == u"grab" ? 1 : 0);
}

QTEST_MAIN(ScreenCaptureTest)
#include "ScreenCaptureTest.moc"
