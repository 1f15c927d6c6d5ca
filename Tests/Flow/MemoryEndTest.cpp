// SPDX-License-Identifier: MIT
#include "Application.h"
#include "CaptureFixture.h"
#include "Settings.h"

#include <QTest>
#include <QThread>

#include <chrono>
#include <new>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Where memory ends, the status item says so and nothing stays on the screen.
class MemoryEndTest : public CaptureFixture
{
    Q_OBJECT

private Q_SLOTS:
    void endsTheSelectionThatCannotBePainted();
    void takesDownWhatItCouldNotShowWhole();
    void givesUpAPictureWithoutMemory();
    void finishesASelectionWithoutMemory();
    void saysThatMemoryHasEnded();
    void whatMeetsTheEndOfMemoryIsGivenUp();
};

void MemoryEndTest::endsTheSelectionThatCannotBePainted()
{
    m_delegate->startCapture();
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    QWidget *panel = m_platform->overlaySurface.shown.first();
    // Outside Qt's own painting there is nothing to paint on, as where memory has ended.
    for (const char *line : {"QWidget::paintEngine: Should no longer be called",
                             "QPainter::begin: Paint device returned engine == 0, type: 1"}) {
        QTest::ignoreMessage(QtWarningMsg, line);
        QTest::ignoreMessage(QtWarningMsg, line);
    }
    for (int i = 0; i < 2; ++i) {
        QPaintEvent event(panel->rect());
        QCoreApplication::sendEvent(panel, &event);
    }
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
    QTRY_VERIFY(m_platform->overlaySurface.shown.isEmpty());
    QCOMPARE(button().currentToolTip,
             u"There is not enough memory. Close some programs and try again."_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Vellora: out of memory"_s});
    QVERIFY(m_delegate->isIdle());
    m_platform->mainQueue.advance(3s);
    capture();
    QVERIFY(m_platform->pasteboard.text);
}

void MemoryEndTest::takesDownWhatItCouldNotShowWhole()
{
    m_platform->overlaySurface.hasMemory = false;
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, m_delegate->startCapture());
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QVERIFY(m_delegate->isIdle());
    m_platform->overlaySurface.hasMemory = true;
    capture();
    QVERIFY(m_platform->pasteboard.text);
}

void MemoryEndTest::givesUpAPictureWithoutMemory()
{
    m_platform->screenRecording.hasMemory = false;
    capture();
    QCOMPARE(m_platform->screenRecording.grabs.size(), 1);
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Vellora: out of memory"_s});
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    QVERIFY(m_delegate->isIdle());
    m_platform->screenRecording.hasMemory = true;
    m_platform->mainQueue.advance(3s);
    capture();
    QVERIFY(m_platform->pasteboard.text);
}

void MemoryEndTest::finishesASelectionWithoutMemory()
{
    Settings::shared().setOutputMode(OutputMode::clipboardOnly);
    button().leftClick();
    m_platform->mainQueue.hasMemory = false;
    select();
    QVERIFY(m_platform->overlaySurface.shown.isEmpty());
    m_platform->mainQueue.hasMemory = true;
    settle();
    // The picture was taken all the same.
    QVERIFY(m_platform->pasteboard.text);
    QVERIFY(m_delegate->isIdle());
}

void MemoryEndTest::saysThatMemoryHasEnded()
{
    m_delegate->memoryDidEnd();
    QCOMPARE(button().currentImage.accessibilityDescription, u"Error"_s);
    QCOMPARE(button().currentToolTip,
             u"There is not enough memory. Close some programs and try again."_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{u"Vellora: out of memory"_s});
    m_platform->mainQueue.advance(3s);
    QCOMPARE(button().currentImage.name, u"menubar_icon"_s);
}

void MemoryEndTest::whatMeetsTheEndOfMemoryIsGivenUp()
{
    auto *app = dynamic_cast<Application *>(qApp);
    QVERIFY(app);
    int told = 0;
    bool isToldInVain = false;
    app->memoryDidEnd = [&] {
        ++told;
        if (isToldInVain) {
            throw std::bad_alloc();
        }
    };
    const auto meetTheEnd = [] {
        throw std::bad_alloc();
    };
    QMetaObject::invokeMethod(app, meetTheEnd, Qt::QueuedConnection);
    QTRY_COMPARE(told, 1);
    isToldInVain = true;
    QMetaObject::invokeMethod(app, meetTheEnd, Qt::QueuedConnection);
    QTRY_COMPARE(told, 2);
    // Elsewhere, and told here.
    isToldInVain = false;
    QThread thread;
    QObject elsewhere;
    elsewhere.moveToThread(&thread);
    thread.start();
    QMetaObject::invokeMethod(&elsewhere, meetTheEnd, Qt::QueuedConnection);
    QTRY_COMPARE(told, 3);
    thread.quit();
    thread.wait();
    app->memoryDidEnd = nullptr;
}

int main(int argc, char *argv[])
{
    Application app(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    MemoryEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "MemoryEndTest.moc"
