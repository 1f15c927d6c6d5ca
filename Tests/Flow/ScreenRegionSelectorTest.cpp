// SPDX-License-Identifier: MIT
#include "ScreenRegionSelector.h"

#include "SelectorView.h"
#include "Support/FakePlatform.h"

#include <QTest>
#include <QWindow>

#include <chrono>

using namespace std::chrono_literals;

/// The overlays of one selection: how they come and go, and that the outcome is told once.
class ScreenRegionSelectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void coversEveryScreenInOrder();
    void reportsASelectionOnce();
    void reportsACancelFromAnyScreen();
    void cancelsWhenTheApplicationIsDeactivated();
    void cancelsWhenTheScreensChange();
    void reportsNothingWithoutScreens();
    void livesUntilAMomentAfterItFinished();
    void ignoresALateDeactivation();
    void runsIndependentlyOfAnotherOne();
    void takesItsOverlaysDownBeforeItReports();
    void survivesItsOwnerBeingGone();
    void handsTheBackdropToItsPanels();
    void endsWhereAScreenCannotBeCovered_data();
    void endsWhereAScreenCannotBeCovered();

private:
    SelectorView &view(int screen);
    std::shared_ptr<ScreenRegionSelector> show();

    std::unique_ptr<FakePlatform> m_platform;
    QList<std::optional<CocoaRect>> m_outcomes;
};

void ScreenRegionSelectorTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_platform->screens.list = {FakeScreens::screen(1, {{0, 0}, {1000, 800}}, 800),
                                FakeScreens::screen(2, {{1000, 0}, {800, 600}}, 800),
                                FakeScreens::screen(3, {{-640, -100}, {640, 480}}, 800)};
    m_outcomes.clear();
}

void ScreenRegionSelectorTest::cleanup()
{
    m_platform->endSelections();
}

SelectorView &ScreenRegionSelectorTest::view(int screen)
{
    return qobject_cast<OverlayPanel *>(m_platform->overlaySurface.shown[screen])->contentView();
}

std::shared_ptr<ScreenRegionSelector> ScreenRegionSelectorTest::show()
{
    auto selector = std::make_shared<ScreenRegionSelector>();
    selector->retainSelf = selector;
    selector->show([this](const std::optional<CocoaRect> &rect) { m_outcomes << rect; });
    return selector;
}

void ScreenRegionSelectorTest::coversEveryScreenInOrder()
{
    show();
    FakeOverlaySurface &surface = m_platform->overlaySurface;
    QCOMPARE(surface.shown.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const Screen &screen = m_platform->screens.list[i];
        // The offscreen windows have a frame, so that their place is not compared.
        QCOMPARE(surface.shown[i]->size(), screen.geometry.size());
        QCOMPARE(view(i).geometry(), QRect(QPoint(), screen.geometry.size()));
        QCOMPARE(view(i).screenOriginInGlobalCocoa, screen.frame.origin);
    }
    QCOMPARE(surface.key, surface.shown[2]);
    QVERIFY(m_outcomes.isEmpty());
    QTest::keyClick(surface.key->windowHandle(), Qt::Key_Escape);
    QCOMPARE(m_outcomes.size(), 1);
}

void ScreenRegionSelectorTest::reportsASelectionOnce()
{
    show();
    SelectorView &second = view(1);
    QTest::mousePress(&second, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&second, {140, 130});
    QTest::mouseRelease(&second, Qt::LeftButton, {}, {140, 130});
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({CocoaRect{{1100, 470}, {40, 30}}}));
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(m_platform->overlaySurface.orderOutCount, 3);
    m_platform->eventMonitor.resignActive();
    QCOMPARE(m_outcomes.size(), 1);
}

void ScreenRegionSelectorTest::reportsACancelFromAnyScreen()
{
    for (int i = 0; i < 3; ++i) {
        m_outcomes.clear();
        show();
        QTest::keyClick(&view(i), Qt::Key_Escape);
        QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({std::nullopt}));
        QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    }
}

void ScreenRegionSelectorTest::cancelsWhenTheApplicationIsDeactivated()
{
    show();
    m_platform->eventMonitor.resignActive();
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({std::nullopt}));
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(m_platform->eventMonitor.activationObserverCount(), 0);
}

void ScreenRegionSelectorTest::cancelsWhenTheScreensChange()
{
    show();
    Q_EMIT m_platform->screens.changed();
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({std::nullopt}));
    Q_EMIT m_platform->screens.changed();
    QCOMPARE(m_outcomes.size(), 1);
}

void ScreenRegionSelectorTest::reportsNothingWithoutScreens()
{
    m_platform->screens.list.clear();
    show();
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({std::nullopt}));
    QCOMPARE(m_platform->eventMonitor.activationObserverCount(), 0);
}

void ScreenRegionSelectorTest::livesUntilAMomentAfterItFinished()
{
    const std::weak_ptr selector = show();
    m_platform->mainQueue.advance(10s);
    QVERIFY(!selector.expired());
    m_platform->eventMonitor.resignActive();
    m_platform->mainQueue.advance(99ms);
    QVERIFY(!selector.expired());
    m_platform->mainQueue.advance(1ms);
    QVERIFY(selector.expired());
}

void ScreenRegionSelectorTest::ignoresALateDeactivation()
{
    const auto selector = show();
    QTest::keyClick(&view(0), Qt::Key_Escape);
    selector->finish(CocoaRect{{0, 0}, {10, 10}});
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>({std::nullopt}));
}

void ScreenRegionSelectorTest::runsIndependentlyOfAnotherOne()
{
    show();
    show();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 6);
    QTest::keyClick(&view(5), Qt::Key_Escape);
    QCOMPARE(m_outcomes.size(), 1);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 3);
    QTest::keyClick(&view(0), Qt::Key_Escape);
    QCOMPARE(m_outcomes.size(), 2);
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
}

void ScreenRegionSelectorTest::takesItsOverlaysDownBeforeItReports()
{
    qsizetype shownAtReport = -1;
    auto selector = std::make_shared<ScreenRegionSelector>();
    selector->show([&](const std::optional<CocoaRect> &) {
        shownAtReport = m_platform->overlaySurface.shown.size();
    });
    QTest::keyClick(&view(0), Qt::Key_Escape);
    QCOMPARE(shownAtReport, 0);
}

void ScreenRegionSelectorTest::survivesItsOwnerBeingGone()
{
    auto selector = std::make_shared<ScreenRegionSelector>();
    selector->show([this](const std::optional<CocoaRect> &rect) { m_outcomes << rect; });
    const QPointer<SelectorView> orphan = &view(0);
    selector.reset();
    // The panels wait for their deletion; a key that arrives meanwhile reaches nobody.
    QVERIFY(orphan);
    QTest::keyClick(orphan, Qt::Key_Escape);
    QVERIFY(m_outcomes.isEmpty());
}

void ScreenRegionSelectorTest::handsTheBackdropToItsPanels()
{
    m_platform->overlaySurface.backdrop = QPixmap(1000, 800);
    m_platform->overlaySurface.backdrop.fill(Qt::red);
    show();
    const QImage picture = m_platform->overlaySurface.shown[0]->grab().toImage();
    const QColor dimmed = picture.pixelColor(500, 400);
    QVERIFY2(qAbs(dimmed.red() - 191) <= 1 && dimmed.green() == 0, qPrintable(dimmed.name()));
}

void ScreenRegionSelectorTest::endsWhereAScreenCannotBeCovered_data()
{
    QTest::addColumn<int>("coverable");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("two of three") << 2;
}

void ScreenRegionSelectorTest::endsWhereAScreenCannotBeCovered()
{
    QFETCH(const int, coverable);
    m_platform->overlaySurface.coverable = coverable;
    auto selector = std::make_shared<ScreenRegionSelector>();
    selector->retainSelf = selector;
    int failures = 0;
    selector->onFailure = [&failures] {
        ++failures;
    };
    selector->show([this](const std::optional<CocoaRect> &rect) { m_outcomes << rect; });
    QCOMPARE(failures, 1);
    QCOMPARE(m_outcomes, QList<std::optional<CocoaRect>>{std::nullopt});
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(m_platform->eventMonitor.activationObserverCount(), 0);
    const std::weak_ptr<ScreenRegionSelector> weak = selector;
    selector.reset();
    QVERIFY(!weak.expired());
    m_platform->mainQueue.advance(100ms);
    QVERIFY(weak.expired());
}

QTEST_MAIN(ScreenRegionSelectorTest)
#include "ScreenRegionSelectorTest.moc"
