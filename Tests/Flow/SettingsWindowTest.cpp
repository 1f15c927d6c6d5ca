// SPDX-License-Identifier: MIT
#include "SettingsWindow.h"

#include "PlainButton.h"
#include "SettingsView.h"
#include "SettingsWindowFixture.h"

#include <QAccessible>
#include <QScrollArea>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QString frameKey = u"settingsWindowFrame"_s;
}

/// The window and its frame; the form in it has its own test.
class SettingsWindowTest : public SettingsWindowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void opensInTheMiddle();
    void comesToTheFrontWhileOpen();
    void isBuiltAnewAfterBeingClosed();
    void restoresItsFrame_data();
    void restoresItsFrame();
    void survivesDamagedFrames_data();
    void survivesDamagedFrames();
    void storesEveryMoveAndSize();
    void storesNothingBeforeItIsSeen();
    void followsOnlyTheWindowInTheSlot();
    void storesAMoveThatNothingTold();
    void keepsThePlaceWhereNoneIsTold();
    void scrollsWhenItIsSmall();
    void childrenThatAreGoneMayBeAskedFor();

private:
    std::optional<QString> storedFrame() { return m_platform->userDefaults().string(frameKey); }
};

void SettingsWindowTest::opensInTheMiddle()
{
    m_platform->popupPlacement.visible = {{100, 50}, {1000, 700}};
    const QWidget *opened = show();
    QCOMPARE(opened->windowTitle(), u"Vellora Settings"_s);
    QCOMPARE(opened->size(), QSize(380, 420));
    QCOMPARE(opened->minimumSize(), QSize(320, 220));
    QVERIFY(opened->isActiveWindow());
    const CocoaPoint middle{100 + 500 - 190, 50 + 350 - (420 + 24) / 2.0};
    QCOMPARE(m_platform->popupPlacement.origin.x, middle.x);
    QCOMPARE(m_platform->popupPlacement.origin.y, middle.y);
    const Qt::WindowFlags flags = opened->windowFlags();
    QVERIFY(flags & Qt::WindowCloseButtonHint);
    QVERIFY(!(flags & Qt::WindowMinimizeButtonHint));
    QVERIFY(!(flags & Qt::WindowStaysOnTopHint));
    QVERIFY(!storedFrame());
}

void SettingsWindowTest::comesToTheFrontWhileOpen()
{
    const QPointer<QWidget> opened = show(m_updater.get());
    const QPointer<SettingsView> form = view();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other, testPatience));
    SettingsWindowController::show(nullptr);
    QCOMPARE(window(), opened.data());
    QCOMPARE(view(), form.data());
    QVERIFY(QTest::qWaitForWindowActive(window(), testPatience));
    // The form keeps the updater that it was built with.
    QVERIFY(!window()->findChildren<PlainButton *>().isEmpty());
    QCOMPARE(window()->findChildren<PlainButton *>().size(), 2);
}

void SettingsWindowTest::isBuiltAnewAfterBeingClosed()
{
    const QPointer<QWidget> first = show();
    const QPointer<SettingsView> form = view();
    first->close();
    QVERIFY(first);
    QVERIFY(!first->isVisible());
    QCOMPARE(window(), first.data());
    show();
    QVERIFY(!first);
    QVERIFY(!form);
    QVERIFY(window()->isVisible());
}

void SettingsWindowTest::restoresItsFrame_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QSize>("contentSize");
    QTest::newRow("on the screen")
        << u"{{10, 20}, {400, 524}}"_s << 10.0 << 20.0 << QSize(400, 500);
    QTest::newRow("a screen that is gone")
        << u"{{-5000, 9000}, {640, 500}}"_s << -5000.0 << 9000.0 << QSize(640, 476);
    QTest::newRow("without braces") << u"1 2 400 524"_s << 1.0 << 2.0 << QSize(400, 500);
    QTest::newRow("fractions") << u"{{10.5, 20.25}, {400, 524}}"_s << 10.5 << 20.25
                               << QSize(400, 500);
}

void SettingsWindowTest::restoresItsFrame()
{
    QFETCH(const QString, text);
    m_platform->userDefaults().set(frameKey, text);
    show();
    QTEST(m_platform->popupPlacement.origin.x, "x");
    QTEST(m_platform->popupPlacement.origin.y, "y");
    QTEST(window()->size(), "contentSize");
    QCOMPARE(storedFrame(), text);
    close();
    show();
    QTEST(window()->size(), "contentSize");
    QCOMPARE(storedFrame(), text);
}

void SettingsWindowTest::survivesDamagedFrames_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("no numbers") << u"somewhere"_s;
    QTest::newRow("too few numbers") << u"{{1, 2}, {3}}"_s;
    QTest::newRow("no size") << u"{{0, 0}, {0, 0}}"_s;
    QTest::newRow("negative size") << u"{{10, 10}, {-400, -400}}"_s;
    QTest::newRow("tiny") << u"{{10, 10}, {1, 1}}"_s;
    QTest::newRow("huge") << u"{{1e300, -1e300}, {1e300, 1e300}}"_s;
    QTest::newRow("no numbers at all") << u"{{nan, inf}, {-inf, nan}}"_s;
    QTest::newRow("too large to be numbers") << u"{{1e999, 0}, {1e999, 1e999}}"_s;
    QTest::newRow("long") << QString(100000, u'{');
    QTest::newRow("binary") << u"\0\x1\xfffe{{"_s;
}

void SettingsWindowTest::survivesDamagedFrames()
{
    QFETCH(const QString, text);
    m_platform->userDefaults().set(frameKey, text);
    show();
    QVERIFY(window()->isVisible());
    QVERIFY(window()->width() >= 320);
    QVERIFY(window()->height() >= 220);
    QCOMPARE(storedFrame(), text);
}

void SettingsWindowTest::storesEveryMoveAndSize()
{
    show();
    m_platform->popupPlacement.origin = {15, 25};
    window()->move(300, 200);
    QCOMPARE(storedFrame(), u"{{15, 25}, {380, 444}}"_s);
    m_platform->popupPlacement.origin = {-1.5, 30};
    window()->move(301, 201);
    QCOMPARE(storedFrame(), u"{{-1.5, 30}, {380, 444}}"_s);
    window()->resize(500, 450);
    QTRY_COMPARE(storedFrame(), u"{{-1.5, 30}, {500, 474}}"_s);
    // And that is where it opens next.
    close();
    m_platform->popupPlacement.origin = {};
    show();
    QCOMPARE(m_platform->popupPlacement.origin, (CocoaPoint{-1.5, 30}));
    QCOMPARE(window()->size(), QSize(500, 450));
}

void SettingsWindowTest::storesNothingBeforeItIsSeen()
{
    show();
    close();
    window()->move(5, 5);
    window()->resize(600, 600);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!storedFrame());
}

void SettingsWindowTest::followsOnlyTheWindowInTheSlot()
{
    show();
    QWidget other;
    other.installEventFilter(new QObject(&other));
    other.show();
    other.move(40, 40);
    QVERIFY(!storedFrame());
    view()->resize(500, 700);
    QVERIFY(!storedFrame());
}

void SettingsWindowTest::storesAMoveThatNothingTold()
{
    show();
    // As on sway: the user has moved the window, and no event says so.
    m_platform->popupPlacement.origin = {77, 88};
    QVERIFY(!storedFrame());
    close();
    QCOMPARE(storedFrame(), u"{{77, 88}, {380, 444}}"_s);
    show();
    QCOMPARE(m_platform->popupPlacement.origin, (CocoaPoint{77, 88}));
    m_platform->popupPlacement.origin = {5, 6};
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other, testPatience));
    QCOMPARE(storedFrame(), u"{{5, 6}, {380, 444}}"_s);
}

void SettingsWindowTest::keepsThePlaceWhereNoneIsTold()
{
    m_platform->popupPlacement.tells = false;
    // What a panel leaves, as the desktop tells it.
    m_platform->popupPlacement.visible = {{0, 100}, {1280, 700}};
    show();
    QVERIFY(!storedFrame());
    // Where it would open without anything stored.
    window()->resize(400, 376);
    QTRY_COMPARE(storedFrame(), u"{{440, 250}, {400, 400}}"_s);
    close();
    m_platform->userDefaults().set(frameKey, u"{{17, 31}, {400, 524}}"_s);
    show();
    m_platform->popupPlacement.origin = {};
    window()->resize(500, 450);
    QTRY_COMPARE(storedFrame(), u"{{17, 31}, {500, 474}}"_s);
    close();
    QCOMPARE(storedFrame(), u"{{17, 31}, {500, 474}}"_s);
}

void SettingsWindowTest::scrollsWhenItIsSmall()
{
    m_platform->userDefaults().set(frameKey, u"{{0, 0}, {320, 244}}"_s);
    show(m_updater.get());
    QCOMPARE(window()->size(), QSize(320, 220));
    QVERIFY(view()->width() >= 320);
    QVERIFY(view()->height() >= 380);
    auto *hosting = window()->findChild<QScrollArea *>();
    // Moving on by Tab brings each control into sight.
    auto *last = window()->findChildren<PlainButton *>().last();
    last->setFocus(Qt::TabFocusReason);
    for (int count = 0; count < 20 && QApplication::focusWidget() != last; ++count) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(last, Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), last);
    const QRect seen(last->mapTo(hosting->viewport(), QPoint(0, 0)), last->size());
    QVERIFY(hosting->viewport()->rect().contains(seen.center()));
}

void SettingsWindowTest::childrenThatAreGoneMayBeAskedFor()
{
    auto *area = show()->findChild<QScrollArea *>();
    QVERIFY(area);
    QAccessibleInterface *known = QAccessible::queryAccessibleInterface(area);
    QVERIFY(known);
    QVERIFY(known->childCount() > 0);
    QVERIFY(known->child(0));
    QVERIFY(!known->child(known->childCount()));
    QVERIFY(!known->child(99));
}

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
