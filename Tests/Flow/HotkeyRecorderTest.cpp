// SPDX-License-Identifier: MIT
#include "HotkeyRecorder.h"

#include "FormColors.h"
#include "Support/FakePlatform.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {
const QString prompt = u"Type shortcut…"_s;
constexpr quint32 noKeyCode = 0xffff;
} // namespace

/// The recorder as a real widget, with key events as the window system delivers them.
class HotkeyRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheShortcut();
    void asksForOneWhenClicked();
    void ignoresKeysWhileIdle();
    void startsBySpace();
    void leavesTabAloneWhileIdle();
    void records_data();
    void records();
    void goesOnRecording_data();
    void goesOnRecording();
    void escapes_data();
    void escapes();
    void keepsRecordingWithoutTheKeyboard();
    void hearsEveryKeyWhileItRecords();
    void takesKeysBeforeMenusAndMnemonics();
    void canRecordWithoutAListener();
    void recordsTheShortcutAlreadyHeld();
    void showsAChangeFromElsewhere();
    void keepsRecordingOverAnUpdate();
    void followsThePalette();
    void hintsAtTheLayout();
    void cannotBeSelected();

private:
    /// A press of the key with this virtual key code.
    void press(quint32 keyCode, Qt::KeyboardModifiers modifiers, int key = Qt::Key_unknown);
    bool showsIdle() const;

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<QWidget> m_window;
    HotkeyRecorderField *m_field = nullptr;
    QPushButton *m_other = nullptr;
    QStringList m_changes;
};

void HotkeyRecorderTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_changes.clear();
    m_window = std::make_unique<QWidget>();
    m_field = new HotkeyRecorderField(m_window.get());
    m_field->hotkeyString = u"cmd+shift+o"_s;
    m_field->onChange = [this](const QString &text) {
        m_changes << text;
    };
    m_field->updateDisplay();
    m_other = new QPushButton(u"&Other"_s, m_window.get());
    auto *row = new QHBoxLayout(m_window.get());
    row->addWidget(m_other);
    row->addWidget(m_field);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), testPatience));
}

void HotkeyRecorderTest::cleanup()
{
    m_window.reset();
    m_platform.reset();
}

void HotkeyRecorderTest::press(quint32 keyCode, Qt::KeyboardModifiers modifiers, int key)
{
    // As QGuiApplication does it: a shortcut may take the key, unless the widget wants it first.
    QKeyEvent override(QEvent::ShortcutOverride, key, modifiers, keyCode, 0, 0);
    override.ignore();
    QCoreApplication::sendEvent(m_field, &override);
    QKeyEvent event(QEvent::KeyPress, key, modifiers, keyCode, 0, 0);
    QCoreApplication::sendEvent(m_field, &event);
    QVERIFY(event.isAccepted());
}

bool HotkeyRecorderTest::showsIdle() const
{
    return !m_field->isRecording() && m_field->text() == u"⌘⇧O" &&
           m_field->palette().color(QPalette::Text) == m_window->palette().color(QPalette::Text);
}

void HotkeyRecorderTest::showsTheShortcut()
{
    QVERIFY(showsIdle());
    QVERIFY(m_field->isReadOnly());
    QVERIFY(m_field->alignment().testFlag(Qt::AlignHCenter));
    QCOMPARE(m_field->accessibleName(), u"Shortcut"_s);
    QVERIFY(m_field->accessibleDescription().startsWith(u"Super + Shift + O."));

    const HotkeyRecorderField empty;
    QCOMPARE(empty.hotkeyString, QString());
    QCOMPARE(empty.text(), QString());
    QVERIFY(!empty.isRecording());
    QVERIFY(!empty.onChange);
}

void HotkeyRecorderTest::asksForOneWhenClicked()
{
    m_other->setFocus();
    QTest::mouseClick(m_field, Qt::RightButton);
    QVERIFY(showsIdle());
    QTest::mouseClick(m_field, Qt::LeftButton);
    QVERIFY(m_field->isRecording());
    QCOMPARE(m_field->text(), prompt);
    QCOMPARE(m_field->palette().color(QPalette::Text),
             FormColors::secondaryLabel(m_window->palette()));
    QVERIFY(m_field->hasFocus());
    QTest::mouseDClick(m_field, Qt::LeftButton);
    QVERIFY(m_field->isRecording());
    QVERIFY(!m_field->hasSelectedText());
    QVERIFY(m_changes.isEmpty());
}

void HotkeyRecorderTest::ignoresKeysWhileIdle()
{
    m_field->setFocus();
    press(31, Qt::MetaModifier | Qt::ShiftModifier, Qt::Key_O);
    press(0, Qt::ControlModifier, Qt::Key_A);
    press(9, Qt::ControlModifier, Qt::Key_V);
    press(36, Qt::NoModifier, Qt::Key_Return);
    press(53, Qt::NoModifier, Qt::Key_Escape);
    press(51, Qt::NoModifier, Qt::Key_Backspace);
    press(0, Qt::NoModifier, Qt::Key_A);
    QVERIFY(showsIdle());
    QVERIFY(!m_field->hasSelectedText());
    QVERIFY(m_changes.isEmpty());
}

void HotkeyRecorderTest::startsBySpace()
{
    m_field->setFocus();
    press(49, Qt::ShiftModifier, Qt::Key_Space);
    QVERIFY(showsIdle());
    press(49, Qt::NoModifier, Qt::Key_Space);
    QVERIFY(m_field->isRecording());
    // It is an ordinary key from then on: ignored without a modifier.
    press(49, Qt::NoModifier, Qt::Key_Space);
    QVERIFY(m_field->isRecording());
    press(53, Qt::NoModifier, Qt::Key_Escape);
    QVERIFY(showsIdle());
}

void HotkeyRecorderTest::leavesTabAloneWhileIdle()
{
    m_other->setFocus();
    QTest::keyClick(m_other, Qt::Key_Tab);
    QVERIFY(m_field->hasFocus());
    QTest::keyClick(m_field, Qt::Key_Tab);
    QVERIFY(m_other->hasFocus());
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(48, Qt::NoModifier, Qt::Key_Tab);
    press(48, Qt::ShiftModifier, Qt::Key_Backtab);
    QVERIFY(m_field->hasFocus());
    QVERIFY(m_field->isRecording());
}

void HotkeyRecorderTest::records_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const auto row = [](int keyCode, Qt::KeyboardModifiers modifiers, const QString &text,
                        const QString &shown) {
        QTest::newRow(qPrintable(text)) << keyCode << modifiers << text << shown;
    };
    row(31, Qt::MetaModifier | Qt::ShiftModifier, u"cmd+shift+o"_s, u"⌘⇧O"_s);
    row(40, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier, u"cmd+ctrl+alt+k"_s,
        u"⌘⌃⌥K"_s);
    row(23, Qt::ControlModifier | Qt::AltModifier, u"ctrl+alt+5"_s, u"⌃⌥5"_s);
    row(6, Qt::ShiftModifier, u"shift+z"_s, u"⇧Z"_s);
    row(29, Qt::MetaModifier | Qt::KeypadModifier, u"cmd+0"_s, u"⌘0"_s);
}

void HotkeyRecorderTest::records()
{
    QFETCH(const int, keyCode);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const QString, text);
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(quint32(keyCode), modifiers);
    QVERIFY(!m_field->isRecording());
    QCOMPARE(m_field->hotkeyString, text);
    QTEST(m_field->text(), "shown");
    QCOMPARE(m_changes, QStringList{text});
    press(0, Qt::MetaModifier);
    QCOMPARE(m_changes.size(), 1);
}

void HotkeyRecorderTest::goesOnRecording_data()
{
    QTest::addColumn<quint32>("keyCode");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("key");
    QTest::newRow("bare letter") << quint32(0) << Qt::KeyboardModifiers() << int(Qt::Key_A);
    QTest::newRow("Shift-F5") << quint32(96) << Qt::KeyboardModifiers(Qt::ShiftModifier)
                              << int(Qt::Key_F5);
    QTest::newRow("Command-Space")
        << quint32(49) << Qt::KeyboardModifiers(Qt::MetaModifier) << int(Qt::Key_Space);
    QTest::newRow("Return") << quint32(36) << Qt::KeyboardModifiers() << int(Qt::Key_Return);
    QTest::newRow("keypad without a code")
        << noKeyCode << Qt::KeyboardModifiers(Qt::ControlModifier | Qt::KeypadModifier)
        << int(Qt::Key_5);
    QTest::newRow("Shift alone") << noKeyCode << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                 << int(Qt::Key_Shift);
    QTest::newRow("Super alone") << noKeyCode << Qt::KeyboardModifiers(Qt::MetaModifier)
                                 << int(Qt::Key_Super_L);
}

void HotkeyRecorderTest::goesOnRecording()
{
    QFETCH(const quint32, keyCode);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const int, key);
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(keyCode, modifiers, key);
    QVERIFY(m_field->isRecording());
    QCOMPARE(m_field->text(), prompt);
    QCOMPARE(m_field->hotkeyString, u"cmd+shift+o"_s);
    QVERIFY(m_changes.isEmpty());
    press(8, Qt::ControlModifier);
    QCOMPARE(m_changes, QStringList{u"ctrl+c"_s});
}

void HotkeyRecorderTest::escapes_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("alone") << Qt::KeyboardModifiers();
    QTest::newRow("with Command") << Qt::KeyboardModifiers(Qt::MetaModifier);
    QTest::newRow("with all") << (Qt::MetaModifier | Qt::ShiftModifier | Qt::ControlModifier |
                                  Qt::AltModifier);
}

void HotkeyRecorderTest::escapes()
{
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(53, modifiers, Qt::Key_Escape);
    QVERIFY(showsIdle());
    QCOMPARE(m_field->hotkeyString, u"cmd+shift+o"_s);
    QVERIFY(m_changes.isEmpty());
}

void HotkeyRecorderTest::keepsRecordingWithoutTheKeyboard()
{
    QTest::mouseClick(m_field, Qt::LeftButton);
    m_other->setFocus();
    QVERIFY(m_field->isRecording());
    QCOMPARE(m_field->text(), prompt);
    m_field->setFocus();
    press(31, Qt::ControlModifier);
    QCOMPARE(m_changes, QStringList{u"ctrl+o"_s});
}

void HotkeyRecorderTest::hearsEveryKeyWhileItRecords()
{
    const QWindow *const &inhibited = m_platform->keyTap.inhibited;
    m_field->setFocus();
    QVERIFY(!inhibited);
    QTest::mouseClick(m_field, Qt::LeftButton);
    QCOMPARE(inhibited, m_window->windowHandle());
    // The desktop has its keys back while another control has the keyboard.
    m_other->setFocus();
    QVERIFY(!inhibited);
    m_field->setFocus();
    QCOMPARE(inhibited, m_window->windowHandle());
    press(31, Qt::ControlModifier);
    QVERIFY(!inhibited);

    QTest::mouseClick(m_field, Qt::LeftButton);
    QVERIFY(inhibited);
    press(53, Qt::NoModifier, Qt::Key_Escape);
    QVERIFY(!inhibited);

    QTest::mouseClick(m_field, Qt::LeftButton);
    QVERIFY(inhibited);
    m_window->hide();
    QVERIFY(!inhibited);
    m_window->show();
    QTest::mouseClick(m_field, Qt::LeftButton);
    delete m_field;
    QVERIFY(!inhibited);
}

void HotkeyRecorderTest::takesKeysBeforeMenusAndMnemonics()
{
    int clicks = 0;
    connect(m_other, &QPushButton::clicked, this, [&] { ++clicks; });
    // Through the window system's door, so that the mnemonic Alt-O has its chance.
    QTest::mouseClick(m_field, Qt::LeftButton);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_O, Qt::AltModifier);
    QCOMPARE(clicks, 0);
    // Without a scan code the fake takes it for the key with code 0.
    QCOMPARE(m_changes, QStringList{u"alt+a"_s});
    m_field->setFocus();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(clicks, 1);
}

void HotkeyRecorderTest::canRecordWithoutAListener()
{
    m_field->onChange = nullptr;
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(31, Qt::ControlModifier);
    QCOMPARE(m_field->hotkeyString, u"ctrl+o"_s);
}

void HotkeyRecorderTest::recordsTheShortcutAlreadyHeld()
{
    QTest::mouseClick(m_field, Qt::LeftButton);
    press(31, Qt::MetaModifier | Qt::ShiftModifier);
    QVERIFY(showsIdle());
    QCOMPARE(m_changes, QStringList{u"cmd+shift+o"_s});
}

void HotkeyRecorderTest::showsAChangeFromElsewhere()
{
    QString shortcut = u"ctrl+a"_s;
    const HotkeyRecorderView view{[&] { return shortcut; },
                                  [&](const QString &text) {
                                      shortcut = text;
                                  }};
    HotkeyRecorderField *field = view.makeView(m_window.get());
    QCOMPARE(field->text(), u"⌃A"_s);
    shortcut = u"alt+b+f7"_s;
    QCOMPARE(field->text(), u"⌃A"_s);
    view.updateView(*field);
    QCOMPARE(field->text(), u"⌥BF7"_s);
    field->onChange(u"cmd+z"_s);
    QCOMPARE(shortcut, u"cmd+z"_s);
}

void HotkeyRecorderTest::keepsRecordingOverAnUpdate()
{
    const HotkeyRecorderView view{[] { return u"ctrl+a"_s; },
                                  [](const QString &) {
                                  }};
    QTest::mouseClick(m_field, Qt::LeftButton);
    view.updateView(*m_field);
    QVERIFY(m_field->isRecording());
    QCOMPARE(m_field->text(), prompt);
    press(53, Qt::NoModifier);
    QCOMPARE(m_field->text(), u"⌃A"_s);
}

void HotkeyRecorderTest::followsThePalette()
{
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    m_window->setPalette(dark);
    m_field->updateDisplay();
    QCOMPARE(m_field->palette().color(QPalette::Text), QColor(Qt::white));
    QTest::mouseClick(m_field, Qt::LeftButton);
    const QColor secondary = m_field->palette().color(QPalette::Text);
    QVERIFY(secondary.lightness() > 128 && secondary.lightness() < 255);
}

void HotkeyRecorderTest::hintsAtTheLayout()
{
    const auto hover = [this] {
        QHelpEvent event(QEvent::ToolTip, {5, 5}, m_field->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(m_field, &event);
        return QToolTip::text();
    };
    QCOMPARE(hover(), u"Super + Shift + O"_s);
    m_platform->keyTap.labels[31] = u"O"_s;
    QCOMPARE(hover(), u"Super + Shift + O"_s);
    m_platform->keyTap.labels[31] = u"Щ"_s;
    QCOMPARE(hover(), u"Super + Shift + O\nOn this keyboard, the key with “Щ”"_s);
    QTranslator german;
    QVERIFY(german.load(u":/translations/vellora_de.qm"_s));
    QCoreApplication::installTranslator(&german);
    m_field->hotkeyString = u"ctrl+shift+alt+o"_s;
    m_platform->keyTap.labels.clear();
    QCOMPARE(hover(), u"Strg + Umschalt + Alt + O"_s);
    QToolTip::hideText();
}

void HotkeyRecorderTest::cannotBeSelected()
{
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::mouseDClick(m_field, Qt::LeftButton, {}, m_field->rect().center());
    press(53, Qt::NoModifier, Qt::Key_Escape);
    QVERIFY(showsIdle());
    QTest::keyClick(m_field, Qt::Key_A, Qt::ControlModifier);
    // As the main menu's commands do.
    m_field->selectAll();
    QVERIFY(!m_field->hasSelectedText());
    m_field->copy();
    QTest::keyClick(m_field, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
}

QTEST_MAIN(HotkeyRecorderTest)
#include "HotkeyRecorderTest.moc"
