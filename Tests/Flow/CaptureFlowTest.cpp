// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "OverlayPanel.h"
#include "ResultPanel.h"
#include "SelectorView.h"
#include "Settings.h"
#include "SettingsWindow.h"
#include "Support/FakePlatform.h"

#include <QTest>
#include <QThreadPool>
#include <QWindow>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The whole road of a capture: selection, grab, sound, recognition, delivery and marks.
class CaptureFlowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void deliversByOutputMode_data();
    void deliversByOutputMode();
    void hidesTheSettingsBesideAPopup();
    void writesTheClipboardBeforeThePopupOpens();
    void marksACopyForAMomentIfWanted();
    void grabsWhatWasSelected();
    void staysSilentOnACancel();
    void staysSilentWhenTheGrabFails();
    void playsTheShutterAfterTheGrab();
    void triesTheSoundsInOrder_data();
    void triesTheSoundsInOrder();
    void showsErrorsOnTheStatusItem_data();
    void showsErrorsOnTheStatusItem();
    void leavesTheClipboardAloneOnAnError();
    void isSilentAboutErrorsWithoutAButton();
    void keepsAMarkThatAnotherMarkRemembered();
    void readsTheModeWhenTheTextIsThere();
    void recognizesWhileAnotherSelectionIsOpen();
    void dropsTheResultWhenTheDelegateIsGone();
    void dropsTheSelectionWhenTheDelegateIsGone();
    void preparesTheRecognizerWhileTheUserDrags();

private:
    FakeStatusItemButton &button() { return *m_platform->statusBar.button; }
    QWidget *popup() { return m_platform->popupPlacement.window; }
    void select();
    /// Selects, and waits until everything that follows at once has happened.
    void capture();
    void settle();

    /// Set aside for the life of the process, as the settings themselves live as long.
    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};

void CaptureFlowTest::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void CaptureFlowTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    Settings::shared().setOutputMode(OutputMode::both);
    Settings::shared().setShutterSound(true);
    Settings::shared().setShowNotification(true);
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"Hello"_s),
                                              FakeTextRecognizer::line(u"world"_s)};
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(5s);
}

void CaptureFlowTest::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void CaptureFlowTest::cleanupTestCase()
{
    QThreadPool::globalInstance()->waitForDone();
}

void CaptureFlowTest::select()
{
    auto *panel = qobject_cast<OverlayPanel *>(m_platform->overlaySurface.shown.last());
    SelectorView &view = panel->contentView();
    QTest::mousePress(&view, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&view, {300, 150});
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {300, 150});
}

void CaptureFlowTest::settle()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents();
}

void CaptureFlowTest::capture()
{
    button().leftClick();
    select();
    settle();
}

void CaptureFlowTest::deliversByOutputMode_data()
{
    QTest::addColumn<OutputMode>("mode");
    QTest::addColumn<bool>("copies");
    QTest::addColumn<bool>("pops");
    QTest::newRow("clipboard only") << OutputMode::clipboardOnly << true << false;
    QTest::newRow("popup only") << OutputMode::popupOnly << false << true;
    QTest::newRow("both") << OutputMode::both << true << true;
}

void CaptureFlowTest::deliversByOutputMode()
{
    QFETCH(OutputMode, mode);
    QFETCH(bool, copies);
    QFETCH(bool, pops);
    Settings::shared().setOutputMode(mode);
    capture();
    QCOMPARE(m_platform->pasteboard.text, copies ? u"Hello\nworld"_s : u"earlier text"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, copies ? 1 : 0);
    QCOMPARE(button().currentImage.name, copies ? u"checkmark.circle.fill"_s : u"menubar_icon"_s);
    QCOMPARE(popup() != nullptr, pops);
    if (pops) {
        QCOMPARE(qobject_cast<ResultPanel *>(popup())->recognizedText(), u"Hello\nworld"_s);
    }
}

void CaptureFlowTest::hidesTheSettingsBesideAPopup()
{
    m_delegate->openSettings();
    const QPointer<QWidget> settingsWindow = SettingsWindowController::window();
    Settings::shared().setOutputMode(OutputMode::clipboardOnly);
    capture();
    QVERIFY(settingsWindow->isVisible());
    Settings::shared().setOutputMode(OutputMode::popupOnly);
    capture();
    QVERIFY(popup());
    QVERIFY(settingsWindow);
    QVERIFY(!settingsWindow->isVisible());
}

void CaptureFlowTest::writesTheClipboardBeforeThePopupOpens()
{
    class Watching : public FakePopupPlacement
    {
    public:
        FakePasteboard *pasteboard = nullptr;
        std::optional<QString> textAtOpening;
        void makeKeyAndOrderFront(QWidget &shown) override
        {
            textAtOpening = pasteboard->text;
            FakePopupPlacement::makeKeyAndOrderFront(shown);
        }
    };
    auto watching = std::make_unique<Watching>();
    Watching &placement = *watching;
    placement.pasteboard = &m_platform->pasteboard;
    Platform::current().popupPlacement = std::move(watching);
    capture();
    QCOMPARE(placement.textAtOpening, u"Hello\nworld"_s);
    QCOMPARE(placement.origin, (CocoaPoint{200, 800 - 150 - 8 - 264}));
}

void CaptureFlowTest::marksACopyForAMomentIfWanted()
{
    capture();
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    QCOMPARE(button().currentImage.accessibilityDescription, u"Copied"_s);
    QVERIFY(!button().currentImage.data.isEmpty());
    QCOMPARE(button().currentToolTip, u"Left-click to capture text · Right-click for menu"_s);
    m_platform->mainQueue.advance(1499ms);
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);

    Settings::shared().setShowNotification(false);
    capture();
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(m_platform->systemSounds.played.size(), 2);
}

void CaptureFlowTest::grabsWhatWasSelected()
{
    capture();
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QCOMPARE(m_platform->screenRecording.grabs[0].rect, QRectF(100, 100, 200, 50));
}

void CaptureFlowTest::staysSilentOnACancel()
{
    button().leftClick();
    QTest::keyClick(m_platform->overlaySurface.key->windowHandle(), Qt::Key_Escape);
    settle();
    QVERIFY(m_platform->screenRecording.grabs.isEmpty());
    QVERIFY(m_platform->systemSounds.played.isEmpty());
    QCOMPARE(m_platform->textRecognizer.performCount(), 0);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void CaptureFlowTest::staysSilentWhenTheGrabFails()
{
    m_platform->screenRecording.nextImage = QImage();
    capture();
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QVERIFY(m_platform->systemSounds.played.isEmpty());
    QCOMPARE(m_platform->systemSounds.beepCount, 0);
    QCOMPARE(m_platform->textRecognizer.performCount(), 0);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void CaptureFlowTest::playsTheShutterAfterTheGrab()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    QVERIFY(m_platform->systemSounds.played.isEmpty());
    select();
    // Before there is any text.
    QCOMPARE(m_platform->systemSounds.played, QStringList{u"/theme/camera-shutter.oga"_s});
    m_platform->textRecognizer.release();

    Settings::shared().setShutterSound(false);
    m_platform->textRecognizer.release();
    capture();
    QCOMPARE(m_platform->systemSounds.played.size(), 1);
    QCOMPARE(m_platform->systemSounds.beepCount, 0);
}

void CaptureFlowTest::triesTheSoundsInOrder_data()
{
    QTest::addColumn<QStringList>("missing");
    QTest::addColumn<QStringList>("unplayable");
    QTest::addColumn<QStringList>("played");
    const QString first = u"/theme/camera-shutter.oga"_s;
    const QString second = u"/theme/screen-capture.oga"_s;
    QTest::newRow("the first is missing")
        << QStringList{u"camera-shutter"_s} << QStringList() << QStringList{second};
    QTest::newRow("the first cannot be played")
        << QStringList() << QStringList{first} << QStringList{second};
    QTest::newRow("none can be played")
        << QStringList() << QStringList{first, second} << QStringList();
    QTest::newRow("all are missing")
        << QStringList{u"camera-shutter"_s, u"screen-capture"_s} << QStringList() << QStringList();
}

void CaptureFlowTest::triesTheSoundsInOrder()
{
    QFETCH(QStringList, missing);
    QFETCH(QStringList, unplayable);
    QFETCH(QStringList, played);
    for (const QString &name : missing) {
        m_platform->systemSounds.theme.remove(name);
    }
    m_platform->systemSounds.unplayable = unplayable;
    capture();
    QCOMPARE(m_platform->systemSounds.played, played);
    QCOMPARE(m_platform->systemSounds.beepCount, played.isEmpty() ? 1 : 0);
}

void CaptureFlowTest::showsErrorsOnTheStatusItem_data()
{
    QTest::addColumn<QString>("underlying");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("no text") << QString() << u"No text found"_s << u"Vellora OCR: No text found"_s;
    QTest::newRow("the recognizer fails")
        << u"No language models are installed."_s
        << u"OCR error: No language models are installed."_s
        << u"Vellora OCR: OCR error: No language models are installed."_s;
    QTest::newRow("a per-cent sign is a directive in the log")
        << u"100%% of 5 %d files, 20% left %s"_s << u"OCR error: 100%% of 5 %d files, 20% left %s"_s
        << u"Vellora OCR: OCR error: 100% of 5  files, 20ft "_s;
}

void CaptureFlowTest::showsErrorsOnTheStatusItem()
{
    QFETCH(QString, underlying);
    QFETCH(QString, message);
    QFETCH(QString, logLine);
    m_platform->textRecognizer.nextResults.clear();
    if (!underlying.isEmpty()) {
        m_platform->textRecognizer.nextError = RecognitionError(underlying);
    }
    capture();
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    QCOMPARE(button().currentImage.accessibilityDescription, u"Error"_s);
    QCOMPARE(button().currentToolTip, message);
    QCOMPARE(m_platform->systemLog.lines, QStringList{logLine});
    m_platform->mainQueue.advance(1999ms);
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    m_platform->mainQueue.advance(1ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(button().currentToolTip, u"Left-click to capture text · Right-click for menu"_s);
}

void CaptureFlowTest::leavesTheClipboardAloneOnAnError()
{
    m_platform->textRecognizer.nextResults.clear();
    capture();
    QCOMPARE(m_platform->pasteboard.text, u"earlier text"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, 0);
    QVERIFY(!popup());
}

void CaptureFlowTest::isSilentAboutErrorsWithoutAButton()
{
    m_delegate.reset();
    m_platform->statusBar.button.reset();
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
    m_platform->textRecognizer.nextResults.clear();
    m_delegate->startCapture();
    select();
    settle();
    QCOMPARE(m_platform->textRecognizer.performCount(), 1);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void CaptureFlowTest::keepsAMarkThatAnotherMarkRemembered()
{
    m_platform->textRecognizer.nextResults.clear();
    capture();
    m_platform->mainQueue.advance(1s);
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    capture();
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    m_platform->mainQueue.advance(1s);
    // The error mark is over and has put the icon back.
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->mainQueue.advance(500ms);
    // The copied mark began on the triangle and puts that back.
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    m_platform->mainQueue.advance(60s);
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
}

void CaptureFlowTest::readsTheModeWhenTheTextIsThere()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    Settings::shared().setOutputMode(OutputMode::popupOnly);
    m_platform->textRecognizer.release();
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"earlier text"_s);
    QVERIFY(popup());
}

void CaptureFlowTest::recognizesWhileAnotherSelectionIsOpen()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    button().leftClick();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    m_platform->textRecognizer.release();
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"Hello\nworld"_s);
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    m_platform->textRecognizer.release();
    select();
    settle();
    QCOMPARE(m_platform->pasteboard.clearCount, 2);
}

void CaptureFlowTest::dropsTheResultWhenTheDelegateIsGone()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    m_delegate.reset();
    m_platform->textRecognizer.release();
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"earlier text"_s);
    QVERIFY(!popup());
}

void CaptureFlowTest::dropsTheSelectionWhenTheDelegateIsGone()
{
    button().leftClick();
    m_delegate.reset();
    select();
    settle();
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QVERIFY(m_platform->screenRecording.grabs.isEmpty());
}

void CaptureFlowTest::preparesTheRecognizerWhileTheUserDrags()
{
    class Prepared : public FakeTextRecognizer
    {
    public:
        int prepareCount = 0;
        void prepare() override { ++prepareCount; }
    };
    auto prepared = std::make_unique<Prepared>();
    Prepared &recognizer = *prepared;
    Platform::current().textRecognizer = std::move(prepared);
    button().leftClick();
    QCOMPARE(recognizer.prepareCount, 1);
    QCOMPARE(recognizer.performCount(), 0);
}

QTEST_MAIN(CaptureFlowTest)
#include "CaptureFlowTest.moc"
