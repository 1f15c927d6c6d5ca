// SPDX-License-Identifier: MIT
#include "UpdateRestart.h"

#include "AppDelegate.h"
#include "OverlayPanel.h"
#include "ResultPopup.h"
#include "SelectorView.h"
#include "SettingsWindow.h"
#include "Support/FakePlatform.h"

#include <QTest>
#include <QWidget>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The program's file is replaced while it runs.
class UpdateRestartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void restartsSoonAfter();
    void leavesAloneWhatIsOnlyBesideIt();
    void waitsWhileThereIsNoProgram();
    void waitsForTheEndOfASelection();
    void waitsForARecognition();
    void doesNotWaitForAStoppedRecognition();
    void waitsForAResultToBeClosed();
    void waitsForTheSettingsToBeClosed();
    void waitsForAnyOtherWindow();
    void handsOverWhatItHoldsForTheClipboard();
    void handsOverNothingOfOthers();
    void looksOnceForManyChanges();
    void stopsWhenItIsGone();

private:
    bool isRestarting() { return m_platform->programRestart.isRequested(); }
    /// A capture up to the recognition.
    void select();

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<UpdateRestart> m_restart;
};

void UpdateRestartTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_platform->userDefaults().set(u"outputMode"_s, u"clipboard"_s);
    m_delegate = std::make_unique<AppDelegate>();
    m_restart = std::make_unique<UpdateRestart>([this] { return m_delegate->isIdle(); });
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(5s);
}

void UpdateRestartTest::cleanup()
{
    m_platform->endSelections();
    if (QWidget *settings = SettingsWindowController::window()) {
        settings->hide();
    }
    m_restart.reset();
    m_delegate.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void UpdateRestartTest::select()
{
    m_delegate->startCapture();
    auto *panel = qobject_cast<OverlayPanel *>(m_platform->overlaySurface.shown.first());
    SelectorView &view = panel->contentView();
    QTest::mousePress(&view, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&view, {300, 150});
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {300, 150});
}

void UpdateRestartTest::restartsSoonAfter()
{
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(2999ms);
    QVERIFY(!isRestarting());
    m_platform->mainQueue.advance(1ms);
    QVERIFY(isRestarting());
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
}

void UpdateRestartTest::leavesAloneWhatIsOnlyBesideIt()
{
    Q_EMIT m_platform->programFile.changed();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    QCOMPARE(m_platform->mainQueue.waitingCount(), 0);
}

void UpdateRestartTest::waitsWhileThereIsNoProgram()
{
    m_platform->programRestart.possible = false;
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    m_platform->programRestart.possible = true;
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::waitsForTheEndOfASelection()
{
    m_delegate->startCapture();
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isRestarting());
    m_platform->endSelections();
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::waitsForARecognition()
{
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    m_platform->textRecognizer.hold();
    select();
    QVERIFY(!m_delegate->isIdle());
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(4s);
    QVERIFY(!isRestarting());
    m_platform->textRecognizer.release();
    QTRY_VERIFY(m_delegate->isIdle());
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::doesNotWaitForAStoppedRecognition()
{
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    m_platform->textRecognizer.hold();
    select();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 1);
    // The next picture stops it.
    select();
    QTRY_COMPARE(m_platform->textRecognizer.stopCount(), 1);
    // Only now, so that it is the second one that is let go on.
    m_platform->textRecognizer.release();
    QTRY_VERIFY(m_delegate->isIdle());
}

void UpdateRestartTest::waitsForAResultToBeClosed()
{
    ResultPopup popup;
    popup.show(u"text"_s, {{100, 100}, {200, 100}});
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    m_platform->eventMonitor.pressOutside({1, 1});
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::waitsForTheSettingsToBeClosed()
{
    m_delegate->openSettings();
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    SettingsWindowController::window()->close();
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::waitsForAnyOtherWindow()
{
    QWidget window;
    window.show();
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    window.close();
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
}

void UpdateRestartTest::handsOverWhatItHoldsForTheClipboard()
{
    m_platform->pasteboard.setString(u"Grüße"_s);
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(3s);
    QCOMPARE(m_platform->programRestart.toBeHandedOver(), u"Grüße"_s);
}

void UpdateRestartTest::handsOverNothingOfOthers()
{
    m_platform->programFile.replace();
    m_platform->mainQueue.advance(3s);
    QVERIFY(isRestarting());
    QCOMPARE(m_platform->programRestart.toBeHandedOver(), std::nullopt);
}

void UpdateRestartTest::looksOnceForManyChanges()
{
    const qsizetype before = m_platform->mainQueue.waitingCount();
    for (int i = 0; i < 100; ++i) {
        m_platform->programFile.replace();
    }
    QCOMPARE(m_platform->mainQueue.waitingCount(), before + 1);
}

void UpdateRestartTest::stopsWhenItIsGone()
{
    m_platform->programFile.replace();
    m_restart.reset();
    m_platform->mainQueue.advance(1min);
    QVERIFY(!isRestarting());
    m_platform->programFile.replace();
    QCOMPARE(m_platform->mainQueue.waitingCount(), 0);
}

QTEST_MAIN(UpdateRestartTest)
#include "UpdateRestartTest.moc"
