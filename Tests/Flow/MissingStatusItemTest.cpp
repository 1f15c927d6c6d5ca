// SPDX-License-Identifier: MIT
#include "MissingStatusItem.h"

#include "AppDelegate.h"
#include "Settings.h"
#include "SettingsWindow.h"
#include "Support/FakePlatform.h"

#include <QCloseEvent>
#include <QLabel>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Extent = StatusItemExposure::Extent;

/// What the program does where no panel shows its status item.
class MissingStatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void saysSoSomeSecondsAfterTheLaunch();
    void saysNothingWhereThereIsAPanel();
    void saysNothingOnceThePanelHasCome();
    void namesTheExtensionThatIsMissing();
    void saysSoAgainUntilTheUserHasClosedIt();
    void quittingIsNoClosing();
    void closingElsewhereIsNoClosing();
    void takesItBackWhenAPanelComes();
    void capturesAsEver();
    void stopsWhenTheDelegateIsGone();

private:
    /// Starts the program, ended first if it runs.
    void launch();
    /// As the window manager does for the user.
    static void closeWindow();
    static bool isOpen();
    /// What the settings say of it; empty where nothing is seen.
    static QString text();

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};

void MissingStatusItemTest::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void MissingStatusItemTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_platform->statusBar.shown.set(Extent::Nothing);
}

void MissingStatusItemTest::cleanup()
{
    m_platform->endSelections();
    if (isOpen()) {
        SettingsWindowController::window()->hide();
    }
    m_delegate.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void MissingStatusItemTest::launch()
{
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
}

void MissingStatusItemTest::closeWindow()
{
    QCloseEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(SettingsWindowController::window(), &event);
    SettingsWindowController::window()->hide();
}

bool MissingStatusItemTest::isOpen()
{
    const QWidget *window = SettingsWindowController::window();
    return window && window->isVisible();
}

QString MissingStatusItemTest::text()
{
    for (const QLabel *label : SettingsWindowController::window()->findChildren<QLabel *>()) {
        if (label->isVisible() && label->text().contains(u"status item"_s)) {
            return label->text();
        }
    }
    return {};
}

void MissingStatusItemTest::saysSoSomeSecondsAfterTheLaunch()
{
    launch();
    m_platform->mainQueue.advance(9999ms);
    QVERIFY(!isOpen());
    m_platform->mainQueue.advance(1ms);
    QVERIFY(isOpen());
    QCOMPARE(text(),
             u"This desktop shows no status item of Vellora. Start Vellora again to capture, "
             u"or turn on the shortcut below. “Settings…” in the launcher’s menu opens this "
             u"window."_s);
    // Nothing was captured or asked for.
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(m_platform->screenRecording.preflightCount, 0);
    m_platform->mainQueue.advance(10min);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void MissingStatusItemTest::saysNothingWhereThereIsAPanel()
{
    m_platform->statusBar.shown.set(Extent::Image);
    launch();
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isOpen());
    m_delegate->openSettings();
    QCOMPARE(text(), QString());
}

void MissingStatusItemTest::saysNothingOnceThePanelHasCome()
{
    launch();
    m_platform->mainQueue.advance(9s);
    m_platform->statusBar.shown.set(Extent::ImageAndToolTip);
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isOpen());
}

void MissingStatusItemTest::namesTheExtensionThatIsMissing()
{
    m_platform->statusBar.shown.set(Extent::Nothing, u"Some Extension"_s);
    launch();
    m_platform->mainQueue.advance(10s);
    QVERIFY(text().endsWith(u"The GNOME extension “Some Extension” shows it."_s));
}

void MissingStatusItemTest::saysSoAgainUntilTheUserHasClosedIt()
{
    launch();
    m_platform->mainQueue.advance(10s);
    SettingsWindowController::window()->hide();
    launch();
    m_platform->mainQueue.advance(10s);
    QVERIFY(isOpen());
    closeWindow();
    m_platform->reloadUserDefaults();
    QVERIFY(MissingStatusItem::wasDismissed());
    launch();
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isOpen());
    // Who opens the settings is still told.
    m_delegate->openSettings();
    QVERIFY(!text().isEmpty());
}

void MissingStatusItemTest::quittingIsNoClosing()
{
    launch();
    m_platform->mainQueue.advance(10s);
    SettingsWindowController::window()->close();
    QVERIFY(!MissingStatusItem::wasDismissed());
}

void MissingStatusItemTest::closingElsewhereIsNoClosing()
{
    m_platform->statusBar.shown.set(Extent::Image);
    launch();
    m_delegate->openSettings();
    closeWindow();
    QVERIFY(!MissingStatusItem::wasDismissed());
}

void MissingStatusItemTest::takesItBackWhenAPanelComes()
{
    launch();
    m_platform->mainQueue.advance(10s);
    QVERIFY(!text().isEmpty());
    m_platform->statusBar.shown.set(Extent::ImageAndToolTip);
    QVERIFY(isOpen());
    QCOMPARE(text(), QString());
    m_platform->statusBar.shown.set(Extent::Nothing);
    QVERIFY(!text().isEmpty());
}

void MissingStatusItemTest::capturesAsEver()
{
    launch();
    m_delegate->performAction(u"capture"_s);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void MissingStatusItemTest::stopsWhenTheDelegateIsGone()
{
    launch();
    m_delegate.reset();
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isOpen());
}

QTEST_MAIN(MissingStatusItemTest)
#include "MissingStatusItemTest.moc"
