// SPDX-License-Identifier: MIT
#include "ResultPopup.h"

#include "MainMenu.h"
#include "ResultPanel.h"
#include "Support/FakePlatform.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QWindow>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The popup: its window, its place, what it copies and how it goes away.
class ResultPopupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheTextInATitledWindow();
    void laysItsContentOut();
    void takesItsSizeFromTheSettings_data();
    void takesItsSizeFromTheSettings();
    void remembersItsFrameSizeWhenResized();
    void hangsBelowTheCapture_data();
    void hangsBelowTheCapture();
    void usesTheMainScreenNotTheCapturesScreen();
    void managesWithoutScreens();
    void showsRightToLeftText_data();
    void showsRightToLeftText();
    void copiesTheTextAsItWasRecognized();
    void copiesOnReturnInTheButton();
    void saysForASecondThatItCopied();
    void closesOnEscapeInIt();
    void leavesEscapeInOtherWindowsAlone();
    void closesOnAClickOutside();
    void staysOnAClickInsideItsFrame();
    void replacesTheEarlierOne();
    void stillShowsWhenTheMouseIsNotTold();
    void forgetsAClosedWindowOnTheNextOutsideClick();
    void aClickWhereAClosedWindowWasChangesNothing();
    void copiedIsSaidOfAWindowThatIsReplaced();
    void theMainMenuEditsTheText();

private:
    ResultPanel &panel();
    const CocoaRect m_near{{100, 500}, {200, 50}};
    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<ResultPopup> m_popup;
};

void ResultPopupTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_popup = std::make_unique<ResultPopup>();
}

void ResultPopupTest::cleanup()
{
    m_popup.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

ResultPanel &ResultPopupTest::panel()
{
    return *qobject_cast<ResultPanel *>(m_platform->popupPlacement.window.data());
}

void ResultPopupTest::showsTheTextInATitledWindow()
{
    m_popup->show(u"Hello\nworld"_s, m_near);
    QVERIFY(panel().isVisible());
    QCOMPARE(panel().windowTitle(), u"Vellora — Recognized Text"_s);
    QTextEdit &text = panel().textView();
    QCOMPARE(text.toPlainText(), u"Hello\nworld"_s);
    QVERIFY(!text.isReadOnly());
    QCOMPARE(text.font().pixelSize(), 14);
    QCOMPARE(text.document()->documentMargin(), 8.);
    QCOMPARE(panel().findChildren<QPushButton *>().size(), 1);
    QCOMPARE(panel().button().text(), u"Copy"_s);
}

void ResultPopupTest::laysItsContentOut()
{
    m_popup->show(u"text"_s, m_near);
    QCOMPARE(panel().size(), QSize(360, 240));
    QCOMPARE(panel().textView().geometry(), QRect(0, 0, 360, 200));
    QCOMPARE(panel().button().geometry(), QRect(260, 204, 90, 28));
    panel().resize(500, 300);
    QCOMPARE(panel().textView().geometry(), QRect(0, 0, 500, 260));
    QCOMPARE(panel().button().geometry(), QRect(400, 264, 90, 28));
}

void ResultPopupTest::takesItsSizeFromTheSettings_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QSize>("size");
    QTest::newRow("absent") << QString() << QSize(360, 240);
    QTest::newRow("empty") << u""_s << QSize(360, 240);
    QTest::newRow("stored") << u"{500, 300}"_s << QSize(500, 300);
    QTest::newRow("no width") << u"{0, 300}"_s << QSize(360, 240);
    QTest::newRow("negative height") << u"{500, -300}"_s << QSize(360, 240);
    QTest::newRow("not a size") << u"large"_s << QSize(360, 240);
    QTest::newRow("one number") << u"{500"_s << QSize(360, 240);
    QTest::newRow("infinite") << u"{1e999, 300}"_s << QSize(360, 240);
    QTest::newRow("larger than all screens: as much as they hold")
        << u"{1e30, 1e30}"_s << QSize(800 + 1280, 600 + 800);
    QTest::newRow("endless text") << QString(200000, u'9') << QSize(360, 240);
}

void ResultPopupTest::takesItsSizeFromTheSettings()
{
    QFETCH(QString, stored);
    QFETCH(QSize, size);
    if (!stored.isNull()) {
        m_platform->userDefaults().set(u"resultPopupSize"_s, stored);
    }
    m_popup->show(u"text"_s, m_near);
    QCOMPARE(panel().size(), size);
}

void ResultPopupTest::remembersItsFrameSizeWhenResized()
{
    m_popup->show(u"text"_s, m_near);
    QVERIFY(!m_platform->userDefaults().contains(u"resultPopupSize"_s));
    panel().resize(400, 300);
    QCOMPARE(m_platform->userDefaults().string(u"resultPopupSize"_s), u"{400, 324}"_s);
    // The stored frame size is taken for the next content size.
    m_popup->show(u"text"_s, m_near);
    QCOMPARE(panel().size(), QSize(400, 324));
}

void ResultPopupTest::hangsBelowTheCapture_data()
{
    QTest::addColumn<CocoaRect>("near");
    QTest::addColumn<CocoaPoint>("origin");
    // The frame is 360 × 264; the screen's visible frame is (0, 30) to (1280, 800).
    QTest::newRow("below") << CocoaRect{{100, 500}, {200, 50}} << CocoaPoint{200, 228};
    QTest::newRow("at the right edge") << CocoaRect{{1100, 500}, {100, 50}} << CocoaPoint{920, 228};
    QTest::newRow("at the bottom edge") << CocoaRect{{100, 200}, {200, 50}} << CocoaPoint{200, 30};
    QTest::newRow("in the lower right corner")
        << CocoaRect{{1200, 40}, {80, 50}} << CocoaPoint{920, 30};
    QTest::newRow("left of the screen") << CocoaRect{{-500, 500}, {100, 50}} << CocoaPoint{0, 228};
    QTest::newRow("no clamp at the top")
        << CocoaRect{{100, 2000}, {200, 50}} << CocoaPoint{200, 1728};
}

void ResultPopupTest::hangsBelowTheCapture()
{
    QFETCH(CocoaRect, near);
    QFETCH(CocoaPoint, origin);
    m_platform->popupPlacement.visible = {{0, 30}, {1280, 770}};
    m_popup->show(u"text"_s, near);
    QCOMPARE(m_platform->popupPlacement.origin, origin);
}

void ResultPopupTest::usesTheMainScreenNotTheCapturesScreen()
{
    const Screen second = FakeScreens::screen(2, {{1280, 0}, {300, 600}}, 800);
    m_platform->screens.list << second;
    m_platform->screens.main = second;
    // Wider than the screen: the left edge wins.
    m_popup->show(u"text"_s, m_near);
    QCOMPARE(m_platform->popupPlacement.origin, (CocoaPoint{1280, 228}));
    m_platform->screens.main.reset();
    m_popup->show(u"text"_s, m_near);
    QCOMPARE(m_platform->popupPlacement.origin, (CocoaPoint{200, 228}));
}

void ResultPopupTest::managesWithoutScreens()
{
    m_platform->screens.main.reset();
    m_platform->screens.list.clear();
    m_popup->show(u"text"_s, {{700, 100}, {50, 50}});
    QCOMPARE(m_platform->popupPlacement.origin, (CocoaPoint{440, 0}));
}

void ResultPopupTest::showsRightToLeftText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("rightToLeft");
    QTest::newRow("empty") << u""_s << false;
    QTest::newRow("Arabic after blanks") << u"  مرحبا"_s << true;
    QTest::newRow("Latin, then Arabic") << u"Hello مرحبا"_s << false;
}

void ResultPopupTest::showsRightToLeftText()
{
    QFETCH(QString, text);
    QFETCH(bool, rightToLeft);
    m_popup->show(text, m_near);
    const QTextOption option = panel().textView().document()->defaultTextOption();
    QCOMPARE(option.textDirection() == Qt::RightToLeft, rightToLeft);
    QCOMPARE(option.alignment().testFlag(Qt::AlignRight), rightToLeft);
}

void ResultPopupTest::copiesTheTextAsItWasRecognized()
{
    m_popup->show(u"as recognized"_s, m_near);
    QCOMPARE(m_platform->pasteboard.text, u"earlier text"_s);
    panel().textView().setPlainText(u"as edited"_s);
    QTest::mouseClick(&panel().button(), Qt::LeftButton);
    QCOMPARE(m_platform->pasteboard.text, u"as recognized"_s);
    QCOMPARE(m_platform->pasteboard.clearCount, 1);
}

void ResultPopupTest::copiesOnReturnInTheButton()
{
    m_popup->show(u"text"_s, m_near);
    panel().button().setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        m_platform->pasteboard.clearContents();
        QTest::keyClick(&panel().button(), key);
        QCOMPARE(m_platform->pasteboard.text, u"text"_s);
    }
}

void ResultPopupTest::saysForASecondThatItCopied()
{
    m_popup->show(u"text"_s, m_near);
    QPushButton &button = panel().button();
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(button.text(), u"Copied!"_s);
    m_platform->mainQueue.advance(600ms);
    QTest::mouseClick(&button, Qt::LeftButton);
    m_platform->mainQueue.advance(400ms);
    // The first click's second is over: no click prolongs another's.
    QCOMPARE(button.text(), u"Copy"_s);
    QTest::mouseClick(&button, Qt::LeftButton);
    m_platform->mainQueue.advance(600ms);
    QCOMPARE(button.text(), u"Copy"_s);
    m_popup.reset();
    m_platform->mainQueue.advance(10s);
}

void ResultPopupTest::closesOnEscapeInIt()
{
    m_popup->show(u"text"_s, m_near);
    const QPointer<QWidget> window = &panel();
    QTest::keyClick(window->windowHandle(), Qt::Key_A);
    QVERIFY(window->isVisible());
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QVERIFY(!window || !window->isVisible());
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 0);
}

void ResultPopupTest::leavesEscapeInOtherWindowsAlone()
{
    class KeyCounter : public QWidget
    {
    public:
        int count = 0;

    protected:
        void keyPressEvent(QKeyEvent *) override { ++count; }
    } other;
    m_popup->show(u"text"_s, m_near);
    other.show();
    QTest::keyClick(other.windowHandle(), Qt::Key_Escape);
    QCOMPARE(other.count, 1);
    QVERIFY(panel().isVisible());
}

void ResultPopupTest::closesOnAClickOutside()
{
    m_popup->show(u"text"_s, m_near);
    const QPointer<QWidget> window = &panel();
    m_platform->eventMonitor.pressOutside({10, 10});
    QVERIFY(!window || !window->isVisible());
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 0);
}

void ResultPopupTest::staysOnAClickInsideItsFrame()
{
    m_popup->show(u"text"_s, m_near);
    m_platform->eventMonitor.pressOutside({201, 229});
    QVERIFY(panel().isVisible());
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 1);
}

void ResultPopupTest::replacesTheEarlierOne()
{
    m_popup->show(u"first"_s, m_near);
    const QPointer<QWidget> first = &panel();
    m_popup->show(u"second"_s, m_near);
    QVERIFY(!first || !first->isVisible());
    QVERIFY(panel().isVisible());
    QCOMPARE(panel().recognizedText(), u"second"_s);
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 1);
}

void ResultPopupTest::stillShowsWhenTheMouseIsNotTold()
{
    m_platform->eventMonitor.tellsMouse = false;
    m_popup->show(u"text"_s, m_near);
    const QPointer<QWidget> window = &panel();
    QVERIFY(window->isVisible());
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QVERIFY(!window || !window->isVisible());
}

void ResultPopupTest::forgetsAClosedWindowOnTheNextOutsideClick()
{
    m_popup->show(u"text"_s, m_near);
    const QPointer<QWidget> window = &panel();
    window->close();
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 1);
    QVERIFY(window);
    m_platform->eventMonitor.pressOutside({10, 10});
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window);
}

void ResultPopupTest::aClickWhereAClosedWindowWasChangesNothing()
{
    m_popup->show(u"text"_s, m_near);
    const QPointer<QWidget> window = &panel();
    window->close();
    m_platform->eventMonitor.pressOutside({201, 229});
    QVERIFY(window);
    QCOMPARE(m_platform->eventMonitor.mouseMonitorCount(), 1);
    m_popup->show(u"another"_s, m_near);
    QVERIFY(panel().isVisible());
}

void ResultPopupTest::copiedIsSaidOfAWindowThatIsReplaced()
{
    m_popup->show(u"first"_s, m_near);
    QTest::mouseClick(&panel().button(), Qt::LeftButton);
    m_popup->show(u"second"_s, m_near);
    QCOMPARE(panel().button().text(), u"Copy"_s);
    QTest::mouseClick(&panel().button(), Qt::LeftButton);
    m_platform->mainQueue.advance(500ms);
    // The task for the first window's button has nothing to do with this one.
    QCOMPARE(panel().button().text(), u"Copied!"_s);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform->mainQueue.advance(500ms);
    QCOMPARE(panel().button().text(), u"Copy"_s);
    QCOMPARE(m_platform->pasteboard.text, u"second"_s);
}

void ResultPopupTest::theMainMenuEditsTheText()
{
    const MainMenu menu(nullptr);
    m_popup->show(u"one"_s, m_near);
    QTextEdit &text = panel().textView();
    QVERIFY(QTest::qWaitForWindowActive(&panel(), testPatience));
    text.setFocus();
    const auto choose = [this](const QString &title) {
        for (QAction *action : panel().actions()) {
            if (action->text() == title) {
                action->trigger();
                return;
            }
        }
        QFAIL(qPrintable(title));
    };
    QStringList titles;
    for (const QAction *action : panel().actions()) {
        titles << action->text();
    }
    QCOMPARE(titles, QStringList({u"Quit Vellora"_s, u"Undo"_s, u"Redo"_s, u"Cut"_s, u"Copy"_s,
                                  u"Paste"_s, u"Select All"_s}));
    choose(u"Select All"_s);
    choose(u"Cut"_s);
    QCOMPARE(text.toPlainText(), QString());
    choose(u"Paste"_s);
    choose(u"Paste"_s);
    QCOMPARE(text.toPlainText(), u"oneone"_s);
    choose(u"Undo"_s);
    QCOMPARE(text.toPlainText(), u"one"_s);
    choose(u"Redo"_s);
    QCOMPARE(text.toPlainText(), u"oneone"_s);
    choose(u"Select All"_s);
    choose(u"Copy"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"oneone"_s);
}

QTEST_MAIN(ResultPopupTest)
#include "ResultPopupTest.moc"
