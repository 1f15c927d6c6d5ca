// SPDX-License-Identifier: MIT
#include "Application.h"
#include "CaptureFixture.h"
#include "Settings.h"

#include <QDir>
#include <QTest>
#include <QTranslator>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What the status item shows for a moment after a capture: a copy, an error.
class MarksTest : public CaptureFixture
{
    Q_OBJECT

private Q_SLOTS:
    void marksACopyForAMomentIfWanted();
    void showsErrorsOnTheStatusItem_data();
    void showsErrorsOnTheStatusItem();
    void isSilentAboutErrorsWithoutAButton();
    void tellsAnErrorInOrder();
    void beginsTheEndOfAMarkLast();
    void saysThatTheSelectionIsEmpty();
    void logsInEnglish();
    void marksACopyOnceItIsThere();
    void warnsOfACopyThatFailed();
    void warnsOfAScreenThatCannotBeCovered();
    void keepsAMarkThatAnotherMarkRemembered();
    void saysOnceThatSettingsCannotBeSaved();
    void settingsStayWhatIsStored();
    void postsWhatThePanelDoesNotShow_data();
    void postsWhatThePanelDoesNotShow();
    void neverPostsRecognizedText();
};

void MarksTest::marksACopyForAMomentIfWanted()
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

void MarksTest::showsErrorsOnTheStatusItem_data()
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

void MarksTest::showsErrorsOnTheStatusItem()
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

void MarksTest::isSilentAboutErrorsWithoutAButton()
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

void MarksTest::tellsAnErrorInOrder()
{
    m_platform->textRecognizer.nextResults.clear();
    m_platform->systemLog.onWrite = [this] {
        // After the image, before the tooltip and the task that ends the mark.
        QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
        QCOMPARE(button().currentToolTip, u"Left-click to capture text · Right-click for menu"_s);
    };
    capture();
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
    QCOMPARE(button().currentToolTip, u"No text found"_s);
}

void MarksTest::beginsTheEndOfAMarkLast()
{
    std::optional<int> waitingAtImage;
    std::optional<int> waitingAtLine;
    button().onImage = [&] {
        waitingAtImage = waitingAtImage.value_or(m_platform->mainQueue.waitingCount());
    };
    m_platform->systemLog.onWrite = [&] {
        waitingAtLine = m_platform->mainQueue.waitingCount();
    };
    capture();
    QVERIFY(waitingAtImage);
    QCOMPARE(m_platform->mainQueue.waitingCount(), *waitingAtImage + 1);
    QVERIFY(!waitingAtLine);

    m_platform->mainQueue.advance(2s);
    waitingAtImage.reset();
    m_platform->textRecognizer.nextResults.clear();
    capture();
    QVERIFY(waitingAtImage);
    QCOMPARE(waitingAtLine, waitingAtImage);
    QCOMPARE(m_platform->mainQueue.waitingCount(), *waitingAtImage + 1);
}

void MarksTest::saysThatTheSelectionIsEmpty()
{
    // Recognition never says so; what is shown for it is fixed all the same.
    m_delegate->showOCRError(OCRError::emptyImage());
    QCOMPARE(button().currentToolTip, u"Empty selection"_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Vellora OCR: Empty selection"_s});
}

void MarksTest::logsInEnglish()
{
    QTranslator german;
    QVERIFY(german.load(u":/translations/vellora_de.qm"_s));
    QCoreApplication::installTranslator(&german);
    m_platform->textRecognizer.nextResults.clear();
    capture();
    QCOMPARE(button().currentToolTip, u"Kein Text gefunden"_s);
    m_platform->textRecognizer.nextError = RecognitionError(u"Es fehlt."_s, u"It is missing."_s);
    capture();
    QVERIFY(button().currentToolTip.endsWith(u"Es fehlt."_s));
    QCOMPARE(m_platform->systemLog.lines,
             QStringList(
                 {u"Vellora OCR: No text found"_s, u"Vellora OCR: OCR error: It is missing."_s}));
}

void MarksTest::marksACopyOnceItIsThere()
{
    m_platform->pasteboard.isLate = true;
    capture();
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->pasteboard.late(true);
    QCOMPARE(button().currentImage.name, u"checkmark.circle.fill"_s);
    m_platform->mainQueue.advance(1500ms);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void MarksTest::warnsOfACopyThatFailed()
{
    m_platform->pasteboard.isLate = true;
    Settings::shared().setShowNotification(false);
    capture();
    m_platform->pasteboard.late(false);
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    QVERIFY(button().currentToolTip.startsWith(u"The text could not be copied"_s));
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Vellora: "_s + button().currentToolTip});
    m_platform->mainQueue.advance(3s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    // A delegate that is gone is not told.
    capture();
    m_delegate.reset();
    m_platform->pasteboard.late(false);
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void MarksTest::warnsOfAScreenThatCannotBeCovered()
{
    m_platform->overlaySurface.coverable = 0;
    m_delegate->startCapture();
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    QCOMPARE(button().currentToolTip, u"The desktop let no overlay cover the screen"_s);
    QCOMPARE(m_platform->systemLog.lines,
             QStringList{u"Vellora: The desktop let no overlay cover the screen"_s});
    m_platform->mainQueue.advance(3s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    m_platform->overlaySurface.coverable = 100;
    capture();
    QVERIFY(m_platform->pasteboard.text);
}

void MarksTest::keepsAMarkThatAnotherMarkRemembered()
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

void MarksTest::saysOnceThatSettingsCannotBeSaved()
{
    // A folder in the file's place cannot be written by anybody.
    const QString file = m_platform->userDefaults().filePath();
    QFile::remove(file);
    QVERIFY(QDir().mkpath(file + u"/inside"_s));
    Settings::shared().setShutterSound(false);
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    QCOMPARE(button().currentToolTip,
             u"Settings cannot be saved: “%1” cannot be written"_s.arg(file));
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Settings cannot be saved in "_s + file});
    m_platform->mainQueue.advance(3s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    Settings::shared().setShutterSound(true);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void MarksTest::settingsStayWhatIsStored()
{
    const QString file = m_platform->userDefaults().filePath();
    Settings &settings = Settings::shared();
    settings.setHotkeyString(u"cmd+shift+o"_s);
    settings.setHotkeyEnabled(false);
    settings.setLaunchAtLogin(false);
    m_platform->loginItem.requests.clear();
    QFile::remove(file);
    QVERIFY(QDir().mkpath(file + u"/inside"_s));

    settings.setHotkeyEnabled(true);
    QVERIFY(!settings.hotkeyEnabled());
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    settings.setHotkeyString(u"ctrl+k"_s);
    QCOMPARE(settings.hotkeyString(), u"cmd+shift+o"_s);
    settings.setLaunchAtLogin(true);
    QVERIFY(!settings.launchAtLogin());
    QCOMPARE(m_platform->loginItem.requests, QStringList());
    settings.setOutputMode(OutputMode::popupOnly);
    QCOMPARE(settings.outputMode(), OutputMode::both);

    QVERIFY(QDir(file).removeRecursively());
    settings.setOutputMode(OutputMode::popupOnly);
    QCOMPARE(settings.outputMode(), OutputMode::popupOnly);
    settings.setOutputMode(OutputMode::both);
}

void MarksTest::postsWhatThePanelDoesNotShow_data()
{
    QTest::addColumn<StatusItemExposure::Extent>("extent");
    QTest::addColumn<QStringList>("error");
    QTest::addColumn<QStringList>("copy");
    using Extent = StatusItemExposure::Extent;
    QTest::newRow("all is shown") << Extent::ImageAndToolTip << QStringList() << QStringList();
    QTest::newRow("no tooltip") << Extent::Image << QStringList{u"No text found"_s}
                                << QStringList();
    QTest::newRow("nothing") << Extent::Nothing << QStringList{u"No text found"_s}
                             << QStringList{u"Copied"_s};
}

void MarksTest::postsWhatThePanelDoesNotShow()
{
    QFETCH(const StatusItemExposure::Extent, extent);
    m_platform->statusBar.shown.set(extent);
    const auto posted = [this] {
        QStringList bodies;
        for (const Notification &each : std::exchange(m_platform->notifications.posted, {})) {
            bodies << each.body;
            // Gone by itself, and no way to a capture by mistake.
            if (!each.isTransient || each.title != u"Vellora" || !each.action) {
                bodies << u"not as it should be"_s;
            }
        }
        return bodies;
    };
    capture();
    QTEST(posted(), "copy");
    m_platform->textRecognizer.nextResults.clear();
    capture();
    QTEST(posted(), "error");
    // The mark itself is as ever.
    QCOMPARE(button().currentImage.name, u"exclamationmark.triangle"_s);
    QCOMPARE(button().currentToolTip, u"No text found"_s);
}

void MarksTest::neverPostsRecognizedText()
{
    m_platform->statusBar.shown.set(StatusItemExposure::Extent::Nothing);
    for (const OutputMode mode : allOutputModes) {
        Settings::shared().setOutputMode(mode);
        capture();
    }
    for (const Notification &each : m_platform->notifications.posted) {
        QVERIFY(!each.title.contains(u"Hello"_s));
        QVERIFY(!each.body.contains(u"Hello"_s));
    }
    // None for the result window alone, and none where the user wants none.
    QCOMPARE(m_platform->notifications.posted.size(), 2);
    Settings::shared().setShowNotification(false);
    Settings::shared().setOutputMode(OutputMode::clipboardOnly);
    capture();
    QCOMPARE(m_platform->notifications.posted.size(), 2);
}

int main(int argc, char *argv[])
{
    Application app(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    MarksTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "MarksTest.moc"
