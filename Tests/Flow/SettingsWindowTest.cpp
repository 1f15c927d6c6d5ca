// SPDX-License-Identifier: MIT
#include "SettingsWindow.h"

#include "AppIcon.h"
#include "FormSection.h"
#include "HotkeyRecorder.h"
#include "PlainButton.h"
#include "Publisher.h"
#include "Settings.h"
#include "SettingsView.h"
#include "Support/FakePlatform.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDesktopServices>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {
const QString frameKey = u"settingsWindowFrame"_s;
}

/// The window, its frame, and the form in it.
class SettingsWindowTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    /// What the link opens, in place of a browser.
    void visit(const QUrl &address) { m_visited << address.toString(); }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

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
    void scrollsWhenItIsSmall();

    void hasFiveSections();
    void showsTheStore();
    void writesAtOnce();
    void followsChangesFromElsewhere();
    void showsTheShortcutRowOnlyWhileOn();
    void dropsARecordingWithItsRow();
    void recordsIntoTheStore();
    void picksByArrowKeys();
    void picksByArrowKeysMirrored();
    void togglesBySpaceAndByTheWholeRow();
    void goesRoundByTab();
    void showsTheVersion();
    void opensTheWebSite();
    void checksForUpdates();
    void leavesOutUpdatesWithoutAnUpdater();
    void namesEveryControl();
    void mirrorsWhenRightToLeft();
    void loadsAnIcon();

private:
    QWidget *show(Updater *updater = nullptr);
    void close();
    SettingsView *view() { return window()->findChild<SettingsView *>(); }
    QWidget *window() { return SettingsWindowController::window(); }
    QCheckBox *toggle(const QString &text);
    QRadioButton *segment(const QString &text);
    HotkeyRecorderField *recorder() { return window()->findChild<HotkeyRecorderField *>(); }
    std::optional<QString> storedFrame() { return m_platform->userDefaults().string(frameKey); }
    static QString plain(QString text) { return text.remove(u'&'); }

    std::unique_ptr<FakePlatform> m_platform;
    QStringList m_visited;
};

void SettingsWindowTest::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void SettingsWindowTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    Settings::shared().setOutputMode(OutputMode::both);
    Settings::shared().setShutterSound(true);
    Settings::shared().setShowNotification(true);
    Settings::shared().setLaunchAtLogin(false);
    Settings::shared().setHotkeyEnabled(false);
    Settings::shared().setHotkeyString(u"cmd+shift+o"_s);
    m_platform->loginItem.requests.clear();
    m_visited.clear();
}

void SettingsWindowTest::cleanup()
{
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    close();
    m_platform.reset();
}

QWidget *SettingsWindowTest::show(Updater *updater)
{
    SettingsWindowController::show(updater);
    if (!QTest::qWaitForWindowActive(window())) {
        QTest::qFail("the window is not active", __FILE__, __LINE__);
    }
    return window();
}

void SettingsWindowTest::close()
{
    if (window()) {
        window()->close();
    }
}

QCheckBox *SettingsWindowTest::toggle(const QString &text)
{
    for (auto *box : window()->findChildren<QCheckBox *>()) {
        if (plain(box->text()) == text) {
            return box;
        }
    }
    return nullptr;
}

QRadioButton *SettingsWindowTest::segment(const QString &text)
{
    for (auto *button : window()->findChildren<QRadioButton *>()) {
        if (button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

void SettingsWindowTest::opensInTheMiddle()
{
    m_platform->screens.main->visibleFrame = {{100, 50}, {1000, 700}};
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
    const QPointer<QWidget> opened = show(&m_platform->updater);
    const QPointer<SettingsView> form = view();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    SettingsWindowController::show(nullptr);
    QCOMPARE(window(), opened.data());
    QCOMPARE(view(), form.data());
    QVERIFY(QTest::qWaitForWindowActive(window()));
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

void SettingsWindowTest::scrollsWhenItIsSmall()
{
    m_platform->userDefaults().set(frameKey, u"{{0, 0}, {320, 244}}"_s);
    show(&m_platform->updater);
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

void SettingsWindowTest::hasFiveSections()
{
    show();
    QStringList headers;
    int lastTop = -1;
    for (auto *section : view()->findChildren<FormSection *>()) {
        headers << section->accessibleName();
        QVERIFY(section->y() > lastTop);
        lastTop = section->y();
    }
    QCOMPARE(headers, (QStringList{u"Output"_s, u"Capture"_s, u"Keyboard Shortcut"_s, u"General"_s,
                                   u"About"_s}));
    QStringList toggles;
    for (auto *box : window()->findChildren<QCheckBox *>()) {
        toggles << plain(box->text());
    }
    QCOMPARE(toggles, (QStringList{u"Shutter sound"_s, u"Show notification when copied"_s,
                                   u"Enable global hotkey"_s, u"Launch at login"_s}));
    QStringList segments;
    for (auto *button : window()->findChildren<QRadioButton *>()) {
        segments << button->text();
    }
    QCOMPARE(segments, (QStringList{u"Clipboard Only"_s, u"Popup Only"_s, u"Both"_s}));
    QVERIFY(view()->minimumSizeHint().width() >= 320);
    QVERIFY(view()->minimumSizeHint().height() >= 380);
}

void SettingsWindowTest::showsTheStore()
{
    Settings::shared().setOutputMode(OutputMode::popupOnly);
    Settings::shared().setShutterSound(false);
    Settings::shared().setHotkeyEnabled(true);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    show();
    QVERIFY(segment(u"Popup Only"_s)->isChecked());
    QVERIFY(!segment(u"Both"_s)->isChecked());
    QVERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(toggle(u"Show notification when copied"_s)->isChecked());
    QVERIFY(toggle(u"Enable global hotkey"_s)->isChecked());
    QVERIFY(!toggle(u"Launch at login"_s)->isChecked());
    QCOMPARE(recorder()->text(), u"⌃⌥5"_s);
    QCOMPARE(recorder()->size(), QSize(160, 24));
}

void SettingsWindowTest::writesAtOnce()
{
    show();
    QTest::mouseClick(segment(u"Popup Only"_s), Qt::LeftButton);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QCOMPARE(m_platform->userDefaults().string(u"outputMode"_s), u"popup"_s);
    QTest::mouseClick(segment(u"Clipboard Only"_s), Qt::LeftButton);
    QCOMPARE(m_platform->userDefaults().string(u"outputMode"_s), u"clipboard"_s);

    QTest::mouseClick(toggle(u"Shutter sound"_s), Qt::LeftButton);
    QVERIFY(!Settings::shared().shutterSound());
    QTest::mouseClick(toggle(u"Show notification when copied"_s), Qt::LeftButton);
    QVERIFY(!Settings::shared().showNotification());
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QVERIFY(Settings::shared().hotkeyEnabled());
    QTest::mouseClick(toggle(u"Launch at login"_s), Qt::LeftButton);
    QVERIFY(Settings::shared().launchAtLogin());
    QCOMPARE(m_platform->loginItem.requests, QStringList{u"register"_s});
    QTest::mouseClick(toggle(u"Launch at login"_s), Qt::LeftButton);
    QCOMPARE(m_platform->loginItem.requests, (QStringList{u"register"_s, u"unregister"_s}));
}

void SettingsWindowTest::followsChangesFromElsewhere()
{
    show();
    int changes = 0;
    const auto counter =
        connect(&Settings::shared(), &Settings::objectWillChange, this, [&] { ++changes; });
    Settings::shared().setShutterSound(false);
    Settings::shared().setOutputMode(OutputMode::clipboardOnly);
    Settings::shared().setHotkeyEnabled(true);
    QCOMPARE(changes, 3);
    QTRY_VERIFY(segment(u"Clipboard Only"_s)->isChecked());
    QVERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(recorder());
    Settings::shared().setHotkeyString(u"ctrl+x"_s);
    QTRY_COMPARE(recorder()->text(), u"⌃X"_s);
    // Showing a value does not store it again.
    QCOMPARE(changes, 4);
    disconnect(counter);
}

void SettingsWindowTest::showsTheShortcutRowOnlyWhileOn()
{
    show();
    QVERIFY(!recorder());
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QTRY_VERIFY(recorder());
    QVERIFY(recorder()->isVisible());
    QCOMPARE(recorder()->text(), u"⌘⇧O"_s);
    bool labelled = false;
    for (const auto *label : window()->findChildren<QLabel *>()) {
        labelled = labelled || plain(label->text()) == u"Shortcut:";
    }
    QVERIFY(labelled);
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QTRY_VERIFY(!recorder());
    for (const auto *label : window()->findChildren<QLabel *>()) {
        QVERIFY(plain(label->text()) != u"Shortcut:");
    }
}

void SettingsWindowTest::dropsARecordingWithItsRow()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    const QPointer<HotkeyRecorderField> field = recorder();
    QTest::mouseClick(field, Qt::LeftButton);
    QVERIFY(field->isRecording());
    // Any other change leaves it recording.
    Settings::shared().setShutterSound(false);
    QTRY_VERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(field->isRecording());
    Settings::shared().setHotkeyEnabled(false);
    QTRY_VERIFY(!field);
    Settings::shared().setHotkeyEnabled(true);
    QTRY_VERIFY(recorder());
    QVERIFY(!recorder()->isRecording());
    QCOMPARE(recorder()->text(), u"⌘⇧O"_s);
}

void SettingsWindowTest::recordsIntoTheStore()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    QTest::mouseClick(recorder(), Qt::LeftButton);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_K,
                    Qt::MetaModifier | Qt::ControlModifier | Qt::AltModifier, 40, 0, 0);
    QCoreApplication::sendEvent(recorder(), &press);
    QCOMPARE(Settings::shared().hotkeyString(), u"cmd+ctrl+alt+k"_s);
    QCOMPARE(m_platform->userDefaults().string(u"hotkeyString"_s), u"cmd+ctrl+alt+k"_s);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder()->text(), u"⌘⌃⌥K"_s);
}

void SettingsWindowTest::picksByArrowKeys()
{
    show();
    segment(u"Both"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::clipboardOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::clipboardOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::both);
    QCOMPARE(QApplication::focusWidget(), segment(u"Both"_s));
}

void SettingsWindowTest::picksByArrowKeysMirrored()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    show();
    segment(u"Both"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::both);
}

void SettingsWindowTest::togglesBySpaceAndByTheWholeRow()
{
    show();
    QCheckBox *sound = toggle(u"Shutter sound"_s);
    QTest::keyClick(sound, Qt::Key_Space);
    QVERIFY(!Settings::shared().shutterSound());
    QTest::mouseClick(sound, Qt::LeftButton, {}, sound->rect().center());
    QVERIFY(Settings::shared().shutterSound());
    QTest::mouseClick(sound, Qt::LeftButton, {}, QPoint(sound->width() - 20, sound->height() / 2));
    QVERIFY(!Settings::shared().shutterSound());
    QTest::keyClick(window()->windowHandle(), Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(Settings::shared().shutterSound());
}

void SettingsWindowTest::goesRoundByTab()
{
    Settings::shared().setHotkeyEnabled(false);
    show(&m_platform->updater);
    // The row that comes later takes its place in the order too.
    Settings::shared().setHotkeyEnabled(true);
    QTRY_VERIFY(recorder());
    segment(u"Both"_s)->setFocus(Qt::TabFocusReason);
    QStringList order;
    for (int count = 0; count < 8; ++count) {
        const QWidget *focused = QApplication::focusWidget();
        const auto *button = qobject_cast<const QAbstractButton *>(focused);
        order << (button ? plain(button->text()) : focused->accessibleName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order, (QStringList{u"Both"_s, u"Shutter sound"_s, u"Show notification when copied"_s,
                                 u"Enable global hotkey"_s, u"Shortcut"_s, u"Launch at login"_s,
                                 Publisher::webSiteName, u"Check for Updates"_s}));
    QCOMPARE(QApplication::focusWidget(), segment(u"Both"_s));
}

void SettingsWindowTest::showsTheVersion()
{
    QCOMPARE(SettingsView::versionText(u"1.2.3"_s), u"v1.2.3"_s);
    QCOMPARE(SettingsView::versionText(std::nullopt), u"v?"_s);
    const auto shows = [this](const QString &text) {
        for (const auto *label : window()->findChildren<QLabel *>()) {
            if (label->text() == text) {
                return true;
            }
        }
        return false;
    };
    show();
    QVERIFY(shows(u"v?"_s));
    close();
    QCoreApplication::setApplicationVersion(u"9.8"_s);
    show();
    QCoreApplication::setApplicationVersion(QString());
    QVERIFY(shows(u"v9.8"_s));
    QVERIFY(shows(u"Vellora"_s));
    QVERIFY(shows(QString::fromUtf8(Publisher::creditLine)));
    QVERIFY(shows(QString::fromUtf8(Publisher::noticeLine)));
}

void SettingsWindowTest::opensTheWebSite()
{
    QDesktopServices::setUrlHandler(u"https"_s, this, "visit");
    show();
    auto *link = window()->findChild<LinkButton *>();
    QTest::mouseClick(link, Qt::LeftButton);
    QTest::keyClick(link, Qt::Key_Space);
    QAccessible::queryAccessibleInterface(link)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QDesktopServices::unsetUrlHandler(u"https"_s);
    QCOMPARE(m_visited, QStringList(3, Publisher::webSiteAddress));
    QVERIFY(QUrl(Publisher::webSiteAddress, QUrl::StrictMode).isValid());
}

void SettingsWindowTest::checksForUpdates()
{
    show(&m_platform->updater);
    QTest::mouseClick(window()->findChildren<PlainButton *>().last(), Qt::LeftButton);
    QCOMPARE(m_platform->updater.checkCount, 1);
    QCOMPARE(m_platform->updater.startCount, 0);
}

void SettingsWindowTest::leavesOutUpdatesWithoutAnUpdater()
{
    show(nullptr);
    QCOMPARE(window()->findChildren<PlainButton *>().size(), 1);
    QVERIFY(qobject_cast<LinkButton *>(window()->findChild<PlainButton *>()));
}

void SettingsWindowTest::namesEveryControl()
{
    Settings::shared().setHotkeyEnabled(true);
    show(&m_platform->updater);
    QStringList controls;
    for (QWidget *widget : window()->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) {
            continue;
        }
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY(accessible);
        controls << u"%1 %2"_s.arg(int(accessible->role()))
                        .arg(plain(accessible->text(QAccessible::Name)));
    }
    const auto control = [](QAccessible::Role role, const QString &name) {
        return u"%1 %2"_s.arg(int(role)).arg(name);
    };
    QCOMPARE(controls,
             (QStringList{control(QAccessible::RadioButton, u"Clipboard Only"_s),
                          control(QAccessible::RadioButton, u"Popup Only"_s),
                          control(QAccessible::RadioButton, u"Both"_s),
                          control(QAccessible::CheckBox, u"Shutter sound"_s),
                          control(QAccessible::CheckBox, u"Show notification when copied"_s),
                          control(QAccessible::CheckBox, u"Enable global hotkey"_s),
                          control(QAccessible::EditableText, u"Shortcut"_s),
                          control(QAccessible::CheckBox, u"Launch at login"_s),
                          control(QAccessible::Link, Publisher::webSiteName),
                          control(QAccessible::Button, u"Check for Updates"_s)}));
    QWidget *picker = segment(u"Both"_s)->parentWidget();
    QAccessibleInterface *group = QAccessible::queryAccessibleInterface(picker);
    QCOMPARE(group->role(), QAccessible::Grouping);
    QCOMPARE(group->text(QAccessible::Name), u"After OCR"_s);
}

void SettingsWindowTest::mirrorsWhenRightToLeft()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    const auto middle = [this](const QWidget *widget) {
        return widget->mapTo(window(), widget->rect().center()).x();
    };
    QVERIFY(middle(segment(u"Clipboard Only"_s)) < middle(segment(u"Both"_s)));
    QVERIFY(middle(recorder()) > window()->width() / 2);
    close();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    show();
    QVERIFY(middle(segment(u"Clipboard Only"_s)) > middle(segment(u"Both"_s)));
    QVERIFY(middle(recorder()) < window()->width() / 2);
    QVERIFY(middle(window()->findChild<AppIconView *>()) > window()->width() / 2);
}

void SettingsWindowTest::loadsAnIcon()
{
    show();
    QCOMPARE(window()->findChild<AppIconView *>()->size(), QSize(44, 44));
    // The build tree holds the icon where an installation does.
    QVERIFY(!loadedAppIcon().isNull());
    const QImage shown = window()->findChild<AppIconView *>()->grab().toImage();
    QCOMPARE(shown.size(), QSize(44, 44) * shown.devicePixelRatio());
    QSet<QRgb> colours;
    for (int x = 0; x < shown.width(); ++x) {
        colours << shown.pixel(x, shown.height() / 2);
    }
    QVERIFY(colours.size() > 3);
}

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
