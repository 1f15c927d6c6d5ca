// SPDX-License-Identifier: MIT
#include "SelectorView.h"

#include "OverlayPanel.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The view alone and on its panel: the drag, what it reports and what it draws.
class SelectorViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reportsTheDraggedRectangleInGlobalCoordinates();
    void reportsADragInAnyDirection_data();
    void reportsADragInAnyDirection();
    void takesSmallDragsForACancel_data();
    void takesSmallDragsForACancel();
    void cancelsOnEscapeAlone();
    void ignoresOtherButtons();
    void ignoresAMoveWithoutAPress();
    void cancelsOnAReleaseWithoutAPress();
    void doesNotClampADragToItsBounds();
    void worksWithoutCallbacks();
    void hasACrosshairEverywhere();
    void showsOnlyTheDimBeforeADrag();
    void cutsAClearHoleWithABlueOutline();
    void showsTheBackdropClearInTheHole();
    void forgetsTheRectangleAfterTheRelease();

private:
    /// A drag in view coordinates, y upwards.
    void drag(CocoaPoint from, CocoaPoint to);
    void send(QEvent::Type type, CocoaPoint point, Qt::MouseButton button,
              Qt::MouseButtons buttons);
    /// What panel and view show, on top of nothing.
    QImage picture();

    std::unique_ptr<OverlayPanel> m_panel;
    SelectorView *m_view = nullptr;
    QList<CocoaRect> m_selections;
    int m_cancelCount = 0;
};

void SelectorViewTest::init()
{
    m_panel = std::make_unique<OverlayPanel>();
    m_panel->setAttribute(Qt::WA_TranslucentBackground);
    m_panel->resize(1440, 900);
    m_panel->show();
    m_view = &m_panel->contentView();
    m_selections.clear();
    m_cancelCount = 0;
    m_view->onSelection = [this](const CocoaRect &rect) {
        m_selections << rect;
    };
    m_view->onCancel = [this] {
        ++m_cancelCount;
    };
}

void SelectorViewTest::send(QEvent::Type type, CocoaPoint point, Qt::MouseButton button,
                            Qt::MouseButtons buttons)
{
    const QPointF position(point.x, m_view->height() - point.y);
    QMouseEvent event(type, position, m_view->mapToGlobal(position), button, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(m_view, &event);
}

void SelectorViewTest::drag(CocoaPoint from, CocoaPoint to)
{
    send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

QImage SelectorViewTest::picture()
{
    QImage image(m_panel->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    m_panel->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

void SelectorViewTest::reportsTheDraggedRectangleInGlobalCoordinates()
{
    m_view->screenOriginInGlobalCocoa = {1440, 0};
    drag({500, 400}, {300, 100});
    QCOMPARE(m_selections, QList<CocoaRect>({{{1740, 100}, {200, 300}}}));
    QCOMPARE(m_cancelCount, 0);
}

void SelectorViewTest::reportsADragInAnyDirection_data()
{
    QTest::addColumn<double>("endX");
    QTest::addColumn<double>("endY");
    QTest::addColumn<double>("left");
    QTest::addColumn<double>("bottom");
    QTest::newRow("right and up") << 120. << 130. << 100. << 100.;
    QTest::newRow("right and down") << 120. << 70. << 100. << 70.;
    QTest::newRow("left and up") << 80. << 130. << 80. << 100.;
    QTest::newRow("left and down") << 80. << 70. << 80. << 70.;
}

void SelectorViewTest::reportsADragInAnyDirection()
{
    QFETCH(double, endX);
    QFETCH(double, endY);
    QFETCH(double, left);
    QFETCH(double, bottom);
    drag({100, 100}, {endX, endY});
    QCOMPARE(m_selections, QList<CocoaRect>({{{left, bottom}, {20, 30}}}));
}

void SelectorViewTest::takesSmallDragsForACancel_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<bool>("selects");
    QTest::newRow("a click") << 0. << 0. << false;
    QTest::newRow("too narrow") << 2.9 << 200. << false;
    QTest::newRow("too low") << 200. << 2.9 << false;
    QTest::newRow("just large enough") << 3. << 3. << true;
}

void SelectorViewTest::takesSmallDragsForACancel()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(bool, selects);
    drag({0, 0}, {width, height});
    QCOMPARE(m_selections.size(), selects ? 1 : 0);
    QCOMPARE(m_cancelCount, selects ? 0 : 1);
}

void SelectorViewTest::cancelsOnEscapeAlone()
{
    QTest::keyClick(m_view, Qt::Key_Return);
    QTest::keyClick(m_view, Qt::Key_A);
    QCOMPARE(m_cancelCount, 0);
    QTest::keyClick(m_view, Qt::Key_Escape);
    QCOMPARE(m_cancelCount, 1);
}

void SelectorViewTest::ignoresOtherButtons()
{
    send(QEvent::MouseButtonPress, {10, 10}, Qt::RightButton, Qt::RightButton);
    send(QEvent::MouseMove, {100, 100}, Qt::NoButton, Qt::RightButton);
    send(QEvent::MouseButtonRelease, {100, 100}, Qt::RightButton, Qt::NoButton);
    QCOMPARE(m_selections.size(), 0);
    QCOMPARE(m_cancelCount, 0);
}

void SelectorViewTest::ignoresAMoveWithoutAPress()
{
    const QImage before = picture();
    send(QEvent::MouseMove, {100, 100}, Qt::NoButton, Qt::NoButton);
    QCOMPARE(picture(), before);
}

void SelectorViewTest::cancelsOnAReleaseWithoutAPress()
{
    send(QEvent::MouseButtonRelease, {100, 100}, Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_cancelCount, 1);
}

void SelectorViewTest::doesNotClampADragToItsBounds()
{
    drag({1400, 450}, {1900, 1000});
    QCOMPARE(m_selections, QList<CocoaRect>({{{1400, 450}, {500, 550}}}));
}

void SelectorViewTest::worksWithoutCallbacks()
{
    m_view->onSelection = nullptr;
    m_view->onCancel = nullptr;
    drag({0, 0}, {100, 100});
    drag({0, 0}, {1, 1});
    QTest::keyClick(m_view, Qt::Key_Escape);
    QCOMPARE(m_selections.size(), 0);
}

void SelectorViewTest::hasACrosshairEverywhere()
{
    QCOMPARE(m_view->cursor().shape(), Qt::CrossCursor);
    // Told of moves without a button too, and nothing lies above it that has another cursor.
    QVERIFY(m_view->hasMouseTracking());
    QVERIFY(m_view->findChildren<QWidget *>().isEmpty());
}

void SelectorViewTest::showsOnlyTheDimBeforeADrag()
{
    const QImage image = picture();
    QImage uniform(image.size(), image.format());
    uniform.fill(QColor(0, 0, 0, 64));
    QCOMPARE(image, uniform);
}

void SelectorViewTest::cutsAClearHoleWithABlueOutline()
{
    send(QEvent::MouseButtonPress, {100, 700}, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, {300, 600}, Qt::NoButton, Qt::LeftButton);
    const QImage image = picture();
    // The rectangle spans x 100 to 300 and, from the top, y 200 to 300.
    QCOMPARE(image.pixelColor(200, 250), QColor(Qt::transparent));
    QCOMPARE(image.pixelColor(50, 250), QColor(0, 0, 0, 64));
    const QColor outline = image.pixelColor(100, 250);
    QVERIFY2(outline.blue() > 240 && outline.green() > 110 && outline.green() < 130 &&
                 outline.red() < 10 && outline.alpha() >= 240,
             qPrintable(outline.name(QColor::HexArgb)));
    // A quarter point of the outline lies inside of the second pixel, a quarter outside.
    QVERIFY(image.pixelColor(101, 250).alpha() > 0);
    QCOMPARE(image.pixelColor(102, 250), QColor(Qt::transparent));
    QVERIFY(image.pixelColor(99, 250).blue() > 0);
    QCOMPARE(image.pixelColor(98, 250), QColor(0, 0, 0, 64));
}

void SelectorViewTest::showsTheBackdropClearInTheHole()
{
    QPixmap backdrop(m_panel->size());
    backdrop.fill(QColor(200, 100, 40));
    m_panel->setBackdrop(backdrop);
    send(QEvent::MouseButtonPress, {100, 700}, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, {300, 600}, Qt::NoButton, Qt::LeftButton);
    const QImage image = picture();
    QCOMPARE(image.pixelColor(200, 250), QColor(200, 100, 40));
    const QColor dimmed = image.pixelColor(50, 250);
    QCOMPARE(dimmed.alpha(), 255);
    QVERIFY2(qAbs(dimmed.red() - 150) <= 1 && qAbs(dimmed.green() - 75) <= 1 &&
                 qAbs(dimmed.blue() - 30) <= 1,
             qPrintable(dimmed.name()));
}

void SelectorViewTest::forgetsTheRectangleAfterTheRelease()
{
    drag({100, 700}, {300, 600});
    QCOMPARE(picture().pixelColor(200, 250), QColor(0, 0, 0, 64));
    send(QEvent::MouseButtonRelease, {100, 100}, Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_selections.size(), 1);
    QCOMPARE(m_cancelCount, 1);
}

QTEST_MAIN(SelectorViewTest)
#include "SelectorViewTest.moc"
