// SPDX-License-Identifier: MIT
// The conversions between Cocoa's, Qt's and the window system's coordinates.
#include "Platform/Screens.h"

#include <QTest>

namespace {
class FixedScreens : public Screens
{
public:
    explicit FixedScreens(const QList<Screen> &screens)
        : m_screens(screens)
    {
    }

    QList<Screen> screens() const override { return m_screens; }
    std::optional<Screen> mainScreen() const override { return std::nullopt; }

private:
    QList<Screen> m_screens;
};

/// 1000 points high, with a screen of twice the density to its left, 200 points higher up.
FixedScreens twoScreens()
{
    return FixedScreens({{{{0, 0}, {1600, 1000}},
                          {{0, 0}, {1600, 1000}},
                          1,
                          {0, 0, 1600, 1000},
                          {0, 0, 1600, 1000}},
                         {{{-1440, 200}, {1440, 900}},
                          {{-1440, 200}, {1440, 900}},
                          2,
                          {-2880, -100, 1440, 900},
                          {-2880, -100, 2880, 1800}}});
}
} // namespace

class ScreensTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toQt();
    void toPixels();
    void fromPixels();
    void thereAndBack();
    void rects();
    void offEveryScreen();
    void withoutScreens();
    void scale();
};

void ScreensTest::toQt()
{
    const FixedScreens screens = twoScreens();
    QCOMPARE(screens.toQt({100, 700}), QPointF(100, 300));
    QCOMPARE(screens.toQt({-1400, 1000}), QPointF(-2840, 0));
}

void ScreensTest::toPixels()
{
    const FixedScreens screens = twoScreens();
    QCOMPARE(screens.toPixels({100, 700}), QPointF(100, 300));
    QCOMPARE(screens.toPixels({-1400, 1000}), QPointF(-2800, 100));
    QCOMPARE(screens.toPixels({-1399.5, 999.5}), QPointF(-2799, 101));
}

void ScreensTest::fromPixels()
{
    const FixedScreens screens = twoScreens();
    QCOMPARE(screens.fromPixels({100, 300}), (CocoaPoint{100, 700}));
    QCOMPARE(screens.fromPixels({-2800, 100}), (CocoaPoint{-1400, 1000}));
}

void ScreensTest::thereAndBack()
{
    const FixedScreens screens = twoScreens();
    for (const CocoaPoint point : {CocoaPoint{0, 0.5}, CocoaPoint{1599, 999},
                                   CocoaPoint{-1440, 200.5}, CocoaPoint{-0.5, 1099}}) {
        QCOMPARE(screens.fromQt(screens.toQt(point)), point);
        QCOMPARE(screens.fromPixels(screens.toPixels(point)), point);
    }
}

void ScreensTest::rects()
{
    const FixedScreens screens = twoScreens();
    QCOMPARE(screens.fromQt(QRectF(100, 250, 200, 50)), (CocoaRect{{100, 700}, {200, 50}}));
    QCOMPARE(screens.fromQt(QRectF(-2840, -40, 100, 40)), (CocoaRect{{-1400, 1000}, {100, 40}}));
}

void ScreensTest::offEveryScreen()
{
    const FixedScreens screens = twoScreens();
    // Measured from the nearest screen: 10 points right of the first, 5 below it.
    QCOMPARE(screens.toQt({1610, -5}), QPointF(1610, 1005));
    QCOMPARE(screens.fromQt({1610, 1005}), (CocoaPoint{1610, -5}));
    QCOMPARE(screens.fromPixels({-2900, 0}), (CocoaPoint{-1450, 1050}));
}

void ScreensTest::withoutScreens()
{
    const FixedScreens none({});
    QCOMPARE(none.toQt({3, 4}), QPointF(3, -4));
    QCOMPARE(none.fromQt({3, -4}), (CocoaPoint{3, 4}));
    QCOMPARE(none.fromPixels({3, -4}), (CocoaPoint{3, 4}));
    QCOMPARE(none.toPixels({3, 4}), QPointF(3, -4));
}

void ScreensTest::scale()
{
    const QList<Screen> screens = twoScreens().screens();
    QCOMPARE(screens[0].scale(), QSizeF(1, 1));
    QCOMPARE(screens[1].scale(), QSizeF(2, 2));
}

QTEST_APPLESS_MAIN(ScreensTest)
#include "ScreensTest.moc"
