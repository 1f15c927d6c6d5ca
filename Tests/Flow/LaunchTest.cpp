// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "MainMenu.h"
#include "Settings.h"
#include "Support/FakePlatform.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The launch sequence, the status item and the menus.
class LaunchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void goesThroughItsStepsInOrder();
    void removesLeftoversBeforeItListens();
    void showsTheStatusItem();
    void touchesNoPermissionAtLaunch();
    void startsTheUpdaterAfterFiveSeconds();
    void neverStartsTheUpdaterWhenItQuitsBefore();
    void swallowsAnUpdaterThatDoesNotStart();
    void capturesOnALeftClick();
    void opensTheMenuOnARightClick();
    void buildsTheMenuAnew();
    void runsTheMenusCommands();
    void doesWhatDesktopActionsAsk();
    void managesWithoutAButton();
    void givesItsWindowsTheEditingKeys();

private:
    FakeStatusItemButton &button() { return *m_platform->statusBar.button; }
    QAction *menuAction(const QString &title);

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};

void LaunchTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_delegate = std::make_unique<AppDelegate>();
}

void LaunchTest::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

QAction *LaunchTest::menuAction(const QString &title)
{
    for (QAction *action : button().menu->actions()) {
        if (action->text() == title) {
            return action;
        }
    }
    return nullptr;
}

void LaunchTest::goesThroughItsStepsInOrder()
{
    Settings::shared().setHotkeyEnabled(true);
    QStringList steps;
    m_platform->statusBar.onMake = [&] {
        steps << u"status item"_s;
        QVERIFY2(m_delegate->findChild<MainMenu *>(), "the main menu comes first");
        QCOMPARE(m_platform->keyTap.checkCount, 0);
    };
    m_platform->keyTap.onCreate = [&] {
        steps << u"shortcut"_s;
        QVERIFY2(button().action, "the status item is set up before the shortcut");
        // Nobody follows the settings of the shortcut yet.
        if (steps.size() == 2) {
            Settings::shared().setHotkeyString(u"ctrl+a"_s);
            QCOMPARE(m_platform->keyTap.createCount, 1);
            QCOMPARE(m_platform->mainQueue.waitingCount(), 0);
        }
    };
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(steps, QStringList({u"status item"_s, u"shortcut"_s}));
    QVERIFY(m_platform->mainQueue.waitingCount() > 0);
    Settings::shared().setHotkeyString(u"ctrl+b"_s);
    QCOMPARE(steps.size(), 3);
    m_platform->keyTap.onCreate = nullptr;
    Settings::shared().setHotkeyEnabled(false);
    Settings::shared().setHotkeyString(u"cmd+shift+o"_s);
}

void LaunchTest::removesLeftoversBeforeItListens()
{
    Settings::shared().setHotkeyEnabled(true);
    int tapsThen = -1;
    m_platform->leftovers().add([&] { tapsThen = m_platform->keyTap.createCount; });
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(tapsThen, 0);
    QCOMPARE(m_platform->keyTap.createCount, 1);
    Settings::shared().setHotkeyEnabled(false);
}

void LaunchTest::showsTheStatusItem()
{
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QVERIFY(!QImage::fromData(button().currentImage.data).isNull());
    QCOMPARE(button().currentImage.accessibilityDescription, QString());
    QCOMPARE(button().currentToolTip, u"Left-click to capture text · Right-click for menu"_s);
}

void LaunchTest::touchesNoPermissionAtLaunch()
{
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(10s);
    QCOMPARE(m_platform->screenRecording.preflightCount, 0);
    QCOMPARE(m_platform->screenRecording.requestCount, 0);
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
}

void LaunchTest::startsTheUpdaterAfterFiveSeconds()
{
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(4999ms);
    QCOMPARE(m_platform->updateSource.startCount, 0);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(m_platform->updateSource.startCount, 1);
    m_platform->mainQueue.advance(60s);
    QCOMPARE(m_platform->updateSource.startCount, 1);
}

void LaunchTest::neverStartsTheUpdaterWhenItQuitsBefore()
{
    m_delegate->applicationDidFinishLaunching();
    m_delegate.reset();
    m_platform->mainQueue.advance(60s);
    QCOMPARE(m_platform->updateSource.startCount, 0);
}

void LaunchTest::swallowsAnUpdaterThatDoesNotStart()
{
    m_platform->updateSource.starts = false;
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(60s);
    QCOMPARE(m_platform->updateSource.startCount, 1);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void LaunchTest::capturesOnALeftClick()
{
    m_delegate->applicationDidFinishLaunching();
    button().leftClick();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    QCOMPARE(button().menuCount, 0);
}

void LaunchTest::opensTheMenuOnARightClick()
{
    m_delegate->applicationDidFinishLaunching();
    button().rightClick();
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QStringList titles;
    for (const QAction *action : button().menu->actions()) {
        titles << (action->isSeparator() ? u"-"_s : action->text());
    }
    QCOMPARE(titles, QStringList({u"Capture Text"_s, u"-"_s, u"Settings…"_s,
                                  u"Check for Updates…"_s, u"-"_s, u"Quit Vellora"_s}));
    QCOMPARE(menuAction(u"Settings…"_s)->shortcut(), QKeySequence(u"Ctrl+,"_s));
    QCOMPARE(menuAction(u"Quit Vellora"_s)->shortcut(), QKeySequence(u"Ctrl+Q"_s));
    QVERIFY(menuAction(u"Capture Text"_s)->shortcut().isEmpty());
}

void LaunchTest::buildsTheMenuAnew()
{
    m_delegate->applicationDidFinishLaunching();
    button().rightClick();
    const QPointer<QMenu> first = button().menu.get();
    button().rightClick();
    QCOMPARE(button().menuCount, 2);
    QVERIFY(!first);
    QCOMPARE(button().menu->actions().size(), 6);
}

void LaunchTest::runsTheMenusCommands()
{
    m_delegate->applicationDidFinishLaunching();
    button().rightClick();
    menuAction(u"Capture Text"_s)->trigger();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    menuAction(u"Check for Updates…"_s)->trigger();
    QCOMPARE(m_platform->updateSource.looks, {UpdateSource::Look::ForUser});
    // Quitting asks the event loop to end; here that is only seen to be asked.
    QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
    QMetaObject::invokeMethod(menuAction(u"Quit Vellora"_s), &QAction::trigger,
                              Qt::QueuedConnection);
    QCoreApplication::exec();
    QCOMPARE(aboutToQuit.size(), 1);
}

void LaunchTest::doesWhatDesktopActionsAsk()
{
    m_delegate->applicationDidFinishLaunching();
    m_delegate->performAction(u"capture"_s);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    m_delegate->performAction(u"check-for-updates"_s);
    QCOMPARE(m_platform->updateSource.looks, {UpdateSource::Look::ForUser});
    m_delegate->performAction(u"format-disk"_s);
    m_delegate->performAction(QString());
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void LaunchTest::managesWithoutAButton()
{
    m_platform->statusBar.button.reset();
    m_delegate->applicationDidFinishLaunching();
    m_delegate->startCapture();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void LaunchTest::givesItsWindowsTheEditingKeys()
{
    m_delegate->applicationDidFinishLaunching();

    /// A widget that edits but knows no keys of its own.
    class Responder : public QWidget
    {
    } window;
    auto *editor = new QPlainTextEdit(&window);
    window.show();
    QStringList keys;
    QStringList titles;
    for (const QAction *action : window.actions()) {
        keys << action->shortcut().toString();
        titles << action->text();
    }
    QCOMPARE(titles, QStringList({u"Quit Vellora"_s, u"Undo"_s, u"Redo"_s, u"Cut"_s, u"Copy"_s,
                                  u"Paste"_s, u"Select All"_s}));
    QCOMPARE(keys, QStringList({u"Ctrl+Q"_s, u"Ctrl+Z"_s, u"Ctrl+Shift+Z"_s, u"Ctrl+X"_s,
                                u"Ctrl+C"_s, u"Ctrl+V"_s, u"Ctrl+A"_s}));
    editor->setPlainText(u"some text"_s);
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, testPatience));
    editor->setFocus();
    window.actions()[6]->trigger();
    QCOMPARE(editor->textCursor().selectedText(), u"some text"_s);
}

QTEST_MAIN(LaunchTest)
#include "LaunchTest.moc"
