// SPDX-License-Identifier: MIT
#include "CaptureFixture.h"
#include "ResultPanel.h"
#include "Settings.h"
#include "SettingsWindow.h"

#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

/// The whole road of a capture: selection, grab, sound, recognition and delivery.
class CaptureFlowTest : public CaptureFixture
{
    Q_OBJECT

private Q_SLOTS:
    void deliversByOutputMode_data();
    void deliversByOutputMode();
    void hidesTheSettingsBesideAPopup();
    void writesTheClipboardBeforeThePopupOpens();
    void grabsWhatWasSelected();
    void staysSilentOnACancel();
    void staysSilentWhenTheGrabFails();
    void playsTheShutterAfterTheGrab();
    void triesTheSoundsInOrder_data();
    void triesTheSoundsInOrder();
    void leavesTheClipboardAloneOnAnError();
    void readsTheModeWhenTheTextIsThere();
    void recognizesWhileAnotherSelectionIsOpen();
    void aNewPictureSupersedesTheOneBeingRead();
    void anOlderResultNeverComesAfterANewerOne();
    void whatIsSeenIsNotSuperseded();
    void aFailedGrabSupersedesNothing();
    void dropsTheResultWhenTheDelegateIsGone();
    void stopsTheRecognitionWhenTheDelegateGoes();
    void dropsTheSelectionWhenTheDelegateIsGone();
    void preparesTheRecognizerWhileTheUserDrags();
};

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

void CaptureFlowTest::leavesTheClipboardAloneOnAnError()
{
    m_platform->textRecognizer.nextResults.clear();
    capture();
    QCOMPARE(m_platform->pasteboard.text, u"earlier text"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, 0);
    QVERIFY(!popup());
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

void CaptureFlowTest::aNewPictureSupersedesTheOneBeingRead()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 1);
    button().leftClick();
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"newer"_s)};
    select();
    QTRY_COMPARE(m_platform->textRecognizer.stopCount(), 1);
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 2);
    m_platform->textRecognizer.release();
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"newer"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, 1);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void CaptureFlowTest::anOlderResultNeverComesAfterANewerOne()
{
    // Even if the older one cannot be stopped any more.
    m_platform->textRecognizer.ignoresStop = true;
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 1);
    button().leftClick();
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"newer"_s)};
    select();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 2);
    m_platform->textRecognizer.release(2);
    QTRY_COMPARE(m_platform->pasteboard.text, u"newer"_s);
    m_platform->textRecognizer.release(1);
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"newer"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, 1);
}

void CaptureFlowTest::whatIsSeenIsNotSuperseded()
{
    capture();
    capture();
    QCOMPARE(m_platform->pasteboard.clearCount, 2);
    QCOMPARE(m_platform->textRecognizer.stopCount(), 0);
}

void CaptureFlowTest::aFailedGrabSupersedesNothing()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    m_platform->screenRecording.nextImage = QImage();
    button().leftClick();
    select();
    m_platform->textRecognizer.release();
    settle();
    QCOMPARE(m_platform->pasteboard.text, u"Hello\nworld"_s);
}

void CaptureFlowTest::stopsTheRecognitionWhenTheDelegateGoes()
{
    m_platform->textRecognizer.hold();
    button().leftClick();
    select();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 1);
    m_delegate.reset();
    settle();
    QCOMPARE(m_platform->textRecognizer.stopCount(), 1);
}

void CaptureFlowTest::dropsTheResultWhenTheDelegateIsGone()
{
    m_platform->textRecognizer.ignoresStop = true;
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
