// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "GlobalHotkey.h"
#include "HotkeyExpectations.h"
#include "Settings.h"
#include "Support/FakePlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr quint64 command = KeyFlags::command;
constexpr quint64 shift = KeyFlags::shift;
} // namespace

/// The delegate that starts and stops the listener as the settings change.
class ShortcutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void startsOnlyWhenOnAndTrusted_data();
    void startsOnlyWhenOnAndTrusted();
    void capturesOnTheShortcut();
    void followsTheShortcut();
    void ignoresTheShortcutWhileOff();
    void followsTheSwitch();
    void restartsOnTheSameValue();
    void switchesOffOnADenial();
    void switchesOffOnALateDenial();
    void staysOnWhenTheKeyIsTaken();
    void freesTheKeyAtTheEnd();

private:
    /// Starts a delegate with these settings.
    void launch(bool enabled, const QString &hotkeyString);
    bool press(const KeyCombination &combination);

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};

void ShortcutTest::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void ShortcutTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
}

void ShortcutTest::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void ShortcutTest::launch(bool enabled, const QString &hotkeyString)
{
    Settings::shared().setHotkeyEnabled(enabled);
    Settings::shared().setHotkeyString(hotkeyString);
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
}

bool ShortcutTest::press(const KeyCombination &combination)
{
    const bool swallowed = m_platform->keyTap.press(combination);
    QCoreApplication::sendPostedEvents();
    return swallowed;
}

void ShortcutTest::startsOnlyWhenOnAndTrusted_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("off") << false << true;
    QTest::newRow("not trusted") << true << false;
    QTest::newRow("on and trusted") << true << true;
}

void ShortcutTest::startsOnlyWhenOnAndTrusted()
{
    QFETCH(const bool, enabled);
    QFETCH(const bool, trusted);
    m_platform->keyTap.trusted = trusted;
    launch(enabled, u"cmd+shift+o"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), enabled && trusted ? 1 : 0);
    // Nobody is asked for anything at launch, and nothing is said.
    QCOMPARE(m_platform->keyTap.promptCount, enabled && trusted ? 1 : 0);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
    QCOMPARE(Settings::shared().hotkeyEnabled(), enabled);
}

void ShortcutTest::capturesOnTheShortcut()
{
    launch(true, u"cmd+shift+o"_s);
    QVERIFY(press(commandShiftO));
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void ShortcutTest::followsTheShortcut()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
    QVERIFY(m_platform->keyTap.tapped() ==
            (KeyCombination{23, KeyFlags::control | KeyFlags::option}));
    QVERIFY(!press(commandShiftO));
    QVERIFY(press({23, KeyFlags::control | KeyFlags::option}));
}

void ShortcutTest::ignoresTheShortcutWhileOff()
{
    launch(false, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    QCOMPARE(m_platform->keyTap.createCount, 0);
    QCOMPARE(m_platform->keyTap.promptCount, 0);
    Settings::shared().setHotkeyEnabled(true);
    QVERIFY(m_platform->keyTap.tapped() ==
            (KeyCombination{23, KeyFlags::control | KeyFlags::option}));
}

void ShortcutTest::followsTheSwitch()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyEnabled(false);
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QVERIFY(!press(commandShiftO));
    Settings::shared().setHotkeyEnabled(true);
    QVERIFY(press(commandShiftO));
}

void ShortcutTest::restartsOnTheSameValue()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyEnabled(true);
    Settings::shared().setHotkeyString(u"cmd+shift+o"_s);
    QCOMPARE(m_platform->keyTap.createCount, 3);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
}

void ShortcutTest::switchesOffOnADenial()
{
    launch(false, u"cmd+shift+o"_s);
    m_platform->keyTap.trusted = false;
    Settings::shared().setHotkeyEnabled(true);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!Settings::shared().hotkeyEnabled());
    QVERIFY(!m_platform->userDefaults().boolean(u"hotkeyEnabled"_s));
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCOMPARE(m_platform->keyTap.promptCount, 1);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrustedLine});

    // The same while it was on, when another shortcut is recorded.
    m_platform->keyTap.trusted = true;
    Settings::shared().setHotkeyEnabled(true);
    m_platform->keyTap.trusted = false;
    Settings::shared().setHotkeyString(u"ctrl+k"_s);
    QVERIFY(!Settings::shared().hotkeyEnabled());
    QCOMPARE(Settings::shared().hotkeyString(), u"ctrl+k"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
}

void ShortcutTest::switchesOffOnALateDenial()
{
    launch(true, u"cmd+shift+o"_s);
    m_platform->keyTap.end(KeyTap::Tap::End::Denied);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!Settings::shared().hotkeyEnabled());
    QVERIFY(!m_platform->userDefaults().boolean(u"hotkeyEnabled"_s));
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrustedLine});
}

void ShortcutTest::staysOnWhenTheKeyIsTaken()
{
    m_platform->keyTap.taken = {commandShiftO};
    launch(true, u"cmd+shift+o"_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreatedLine});
    QVERIFY(Settings::shared().hotkeyEnabled());
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    // Recording another one recovers.
    Settings::shared().setHotkeyString(u"cmd+shift+p"_s);
    QVERIFY(press({35, command | shift}));
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void ShortcutTest::freesTheKeyAtTheEnd()
{
    launch(true, u"cmd+shift+o"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
    m_delegate.reset();
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    Settings::shared().setHotkeyString(u"ctrl+k"_s);
    QCOMPARE(m_platform->keyTap.createCount, 1);
}

QTEST_MAIN(ShortcutTest)
#include "ShortcutTest.moc"
