// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "Support/FakePlatform.h"

#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QString defaultText = u"Left-click to capture text · Right-click for menu"_s;
const QString neededText = u"Screen Recording permission not granted — left-click to try again"_s;
const ScreenRecordingRefusal refusal{u"Bitte installieren."_s, u"Please install."_s};
const QString refusalLine = u"Vellora: Screen Recording permission not granted: Please install."_s;
} // namespace

/// Asking for the permission to record the screen, and waiting for it.
class PermissionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void capturesAtOnceWhenTheRequestGrantsIt();
    void capturesByItselfOnceItIsGranted();
    void pollsEveryOneAndAHalfSeconds();
    void givesUpAfterTwoMinutes();
    void sharesTheTimeOutBetweenTwoRequests();
    void pollsOnceAfterTwoRequests();
    void doesNothingWhenGrantedAfterTheTimeOut();
    void staysQuietAtTheTimeOutOnceGranted();
    void tellsARefusalAtOnce();
    void tellsARefusalThatComesLater();
    void capturesAfterARefusal();
    void managesWithoutAButton();
    void stopsWhenTheDelegateIsGone();
    void stopsWhenTheDelegateGoesBetweenGrantAndCapture();

private:
    FakeStatusItemButton &button() { return *m_platform->statusBar.button; }
    bool isCapturing() { return !m_platform->overlaySurface.shown.isEmpty(); }

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};

void PermissionTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_platform->screenRecording.preflight = false;
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(5s);
}

void PermissionTest::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void PermissionTest::capturesAtOnceWhenTheRequestGrantsIt()
{
    class Granting : public FakeScreenRecording
    {
    public:
        bool requestAccess() override
        {
            preflight = true;
            return true;
        }
    };
    auto granting = std::make_unique<Granting>();
    granting->preflight = false;
    Platform::current().screenRecording = std::move(granting);
    m_delegate->startCapture();
    QVERIFY(isCapturing());
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void PermissionTest::capturesByItselfOnceItIsGranted()
{
    button().leftClick();
    QVERIFY(!isCapturing());
    QCOMPARE(m_platform->screenRecording.requestCount, 1);
    m_platform->mainQueue.advance(10s);
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(500ms);
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    QCOMPARE(button().currentImage.accessibilityDescription, u"Copied"_s);
    QVERIFY(!isCapturing());
    m_platform->mainQueue.advance(499ms);
    QVERIFY(!isCapturing());
    m_platform->mainQueue.advance(1ms);
    QVERIFY(isCapturing());
    m_platform->mainQueue.advance(1s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void PermissionTest::pollsEveryOneAndAHalfSeconds()
{
    button().leftClick();
    const int before = m_platform->screenRecording.preflightCount;
    m_platform->mainQueue.advance(1499ms);
    QCOMPARE(m_platform->screenRecording.preflightCount, before);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(m_platform->screenRecording.preflightCount, before + 1);
    m_platform->mainQueue.advance(15s);
    QCOMPARE(m_platform->screenRecording.preflightCount, before + 11);
    QCOMPARE(m_platform->screenRecording.requestCount, 1);
}

void PermissionTest::givesUpAfterTwoMinutes()
{
    button().leftClick();
    m_platform->mainQueue.advance(119999ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(button().currentImage.accessibilityDescription, u"Permission needed"_s);
    QCOMPARE(button().currentToolTip, neededText);
    const int polls = m_platform->screenRecording.preflightCount;
    m_platform->mainQueue.advance(2999ms);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(button().currentToolTip, defaultText);
    m_platform->mainQueue.advance(10min);
    QCOMPARE(m_platform->screenRecording.preflightCount, polls);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
    QCOMPARE(m_platform->mainQueue.waitingCount(), 0);
}

void PermissionTest::sharesTheTimeOutBetweenTwoRequests()
{
    button().leftClick();
    m_platform->mainQueue.advance(60s);
    button().leftClick();
    QCOMPARE(m_platform->screenRecording.requestCount, 2);
    m_platform->mainQueue.advance(59999ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    // The second request's own time-out finds nothing left to end.
    m_platform->mainQueue.advance(60s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void PermissionTest::pollsOnceAfterTwoRequests()
{
    button().leftClick();
    m_platform->mainQueue.advance(1s);
    button().leftClick();
    const int before = m_platform->screenRecording.preflightCount;
    // The first poll would look after half a second more.
    m_platform->mainQueue.advance(1499ms);
    QCOMPARE(m_platform->screenRecording.preflightCount, before);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(m_platform->screenRecording.preflightCount, before + 1);
    m_platform->mainQueue.advance(15s);
    QCOMPARE(m_platform->screenRecording.preflightCount, before + 11);
}

void PermissionTest::doesNothingWhenGrantedAfterTheTimeOut()
{
    button().leftClick();
    m_platform->mainQueue.advance(130s);
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(10min);
    QVERIFY(!isCapturing());
    button().leftClick();
    QVERIFY(isCapturing());
    QCOMPARE(m_platform->screenRecording.requestCount, 1);
}

void PermissionTest::staysQuietAtTheTimeOutOnceGranted()
{
    button().leftClick();
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(3s);
    QVERIFY(isCapturing());
    m_platform->mainQueue.advance(10min);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void PermissionTest::tellsARefusalAtOnce()
{
    m_platform->screenRecording.refused = refusal;
    button().leftClick();
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(button().currentToolTip, neededText + u"\nBitte installieren."_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{refusalLine});
    m_platform->mainQueue.advance(2999ms);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(button().currentToolTip, defaultText);
    // Once is enough, until the user asks again or the wait is over.
    m_platform->mainQueue.advance(116999ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
    m_platform->mainQueue.advance(10s);
    button().leftClick();
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList(2, refusalLine));
}

void PermissionTest::tellsARefusalThatComesLater()
{
    button().leftClick();
    m_platform->mainQueue.advance(2s);
    m_platform->screenRecording.refused = refusal;
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->mainQueue.advance(1s);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{refusalLine});
    m_platform->mainQueue.advance(30s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
    // The desktop asks once more, and has another no.
    m_platform->screenRecording.refused.reset();
    m_platform->mainQueue.advance(2s);
    m_platform->screenRecording.refused = refusal;
    m_platform->mainQueue.advance(2s);
    QCOMPARE(button().currentImage.name, u"lock.shield"_s);
    QCOMPARE(m_platform->systemLog.lines.size(), 2);
}

void PermissionTest::capturesAfterARefusal()
{
    m_platform->screenRecording.refused = refusal;
    button().leftClick();
    m_platform->mainQueue.advance(10s);
    m_platform->screenRecording.preflight = true;
    m_platform->screenRecording.refused.reset();
    m_platform->mainQueue.advance(2s);
    QVERIFY(isCapturing());
}

void PermissionTest::managesWithoutAButton()
{
    m_delegate.reset();
    m_platform->statusBar.button.reset();
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
    m_delegate->startCapture();
    m_platform->mainQueue.advance(150s);
    m_delegate->startCapture();
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(2s);
    QVERIFY(isCapturing());
}

void PermissionTest::stopsWhenTheDelegateIsGone()
{
    button().leftClick();
    m_delegate.reset();
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(150s);
    QVERIFY(!isCapturing());
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void PermissionTest::stopsWhenTheDelegateGoesBetweenGrantAndCapture()
{
    button().leftClick();
    m_platform->screenRecording.preflight = true;
    m_platform->mainQueue.advance(1600ms);
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    m_delegate.reset();
    m_platform->mainQueue.advance(150s);
    QVERIFY(!isCapturing());
    // The mark's end needs the button alone.
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

QTEST_MAIN(PermissionTest)
#include "PermissionTest.moc"
