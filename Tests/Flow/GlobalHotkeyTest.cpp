// SPDX-License-Identifier: MIT
#include "GlobalHotkey.h"

#include "AppDelegate.h"
#include "Settings.h"
#include "Support/FakePlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr quint64 command = KeyFlags::command;
constexpr quint64 shift = KeyFlags::shift;
constexpr KeyCombination commandShiftO{31, command | shift};
constexpr quint64 capsLock = 0x10000;
constexpr quint64 numericPad = 0x200000;
constexpr quint64 function = 0x800000;
constexpr quint64 leftCommandDevice = 0x8;

const QString notTrusted = u"GlobalHotkey: Accessibility permission not yet granted"_s;
const QString notCreated =
    u"GlobalHotkey: Failed to create event tap — Accessibility permission likely denied"_s;
} // namespace

/// The listener, and the delegate that starts and stops it as the settings change.
class GlobalHotkeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void startsOutStoppedForCommandShiftO();
    void configuresWithoutStarting();
    void runsTheActionLaterAndSwallows();
    void matchesExactly_data();
    void matchesExactly();
    void runsOncePerRepeatedPress();
    void runsTheActionOfTheMoment();
    void livesUntilTheActionHasRun();
    void startsOnce();
    void stopsAndStartsAgain();
    void asksForTrustAtEachStart();
    void tellsOfADenial();
    void managesWithoutADenialHandler();
    void logsATapThatCannotBeCreated();
    void followsAConfigurationWhileRunning();
    void staysDeafOnATakenConfiguration();
    void firesOnBareKeys();

    void delegateStartsOnlyWhenOnAndTrusted_data();
    void delegateStartsOnlyWhenOnAndTrusted();
    void delegateCapturesOnTheShortcut();
    void delegateFollowsTheShortcut();
    void delegateIgnoresTheShortcutWhileOff();
    void delegateFollowsTheSwitch();
    void delegateRestartsOnTheSameValue();
    void delegateSwitchesOffOnADenial();
    void delegateStaysOnWhenTheKeyIsTaken();
    void delegateFreesTheKeyAtTheEnd();

private:
    std::shared_ptr<GlobalHotkey> listener();
    /// Starts a delegate with these settings.
    void launch(bool enabled, const QString &hotkeyString);
    bool press(const KeyCombination &combination);

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
    int m_actions = 0;
    int m_denials = 0;
};

void GlobalHotkeyTest::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void GlobalHotkeyTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_actions = 0;
    m_denials = 0;
}

void GlobalHotkeyTest::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

std::shared_ptr<GlobalHotkey> GlobalHotkeyTest::listener()
{
    auto hotkey = GlobalHotkey::make([this] { ++m_actions; });
    hotkey->onPermissionDenied = [this] {
        ++m_denials;
    };
    return hotkey;
}

void GlobalHotkeyTest::launch(bool enabled, const QString &hotkeyString)
{
    Settings::shared().setHotkeyEnabled(enabled);
    Settings::shared().setHotkeyString(hotkeyString);
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
}

bool GlobalHotkeyTest::press(const KeyCombination &combination)
{
    const bool swallowed = m_platform->keyTap.press(combination);
    QCoreApplication::sendPostedEvents();
    return swallowed;
}

void GlobalHotkeyTest::startsOutStoppedForCommandShiftO()
{
    const auto hotkey = listener();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(int(hotkey->keyCode()), 31);
    QCOMPARE(hotkey->modifiers(), quint64(0x120000));
    QCOMPARE(GlobalHotkey::keyMap().value(u"o"_s), quint16(31));
}

void GlobalHotkeyTest::configuresWithoutStarting()
{
    const auto hotkey = listener();
    hotkey->configure(u"shift+a+b"_s);
    QCOMPARE(int(hotkey->keyCode()), 11);
    QCOMPARE(hotkey->modifiers(), shift);
    hotkey->configure(QString());
    QCOMPARE(int(hotkey->keyCode()), 31);
    QCOMPARE(hotkey->modifiers(), quint64(0));
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->keyTap.createCount, 0);
    QCOMPARE(m_platform->keyTap.promptCount, 0);
}

void GlobalHotkeyTest::runsTheActionLaterAndSwallows()
{
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(hotkey->isRunning());
    QVERIFY(m_platform->keyTap.press(commandShiftO));
    QCOMPARE(m_actions, 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_actions, 1);
}

void GlobalHotkeyTest::matchesExactly_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<bool>("matches");
    QTest::newRow("the shortcut") << 31 << (command | shift) << true;
    QTest::newRow("Caps Lock") << 31 << (command | shift | capsLock) << true;
    QTest::newRow("other flags") << 31
                                 << (command | shift | numericPad | function | leftCommandDevice)
                                 << true;
    QTest::newRow("Option too") << 31 << (command | shift | KeyFlags::option) << false;
    QTest::newRow("Control too") << 31 << (command | shift | KeyFlags::control) << false;
    QTest::newRow("Command only") << 31 << command << false;
    QTest::newRow("bare") << 31 << quint64(0) << false;
    QTest::newRow("another key") << 32 << (command | shift) << false;
}

void GlobalHotkeyTest::matchesExactly()
{
    QFETCH(const int, keyCode);
    QFETCH(const quint64, flags);
    QFETCH(const bool, matches);
    const auto hotkey = listener();
    hotkey->start();
    QCOMPARE(press({quint16(keyCode), flags}), matches);
    QCOMPARE(m_actions, matches ? 1 : 0);
}

void GlobalHotkeyTest::runsOncePerRepeatedPress()
{
    const auto hotkey = listener();
    hotkey->start();
    for (int repeat = 0; repeat < 5; ++repeat) {
        QVERIFY(m_platform->keyTap.press(commandShiftO));
    }
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_actions, 5);
}

void GlobalHotkeyTest::runsTheActionOfTheMoment()
{
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(m_platform->keyTap.press(commandShiftO));
    int others = 0;
    hotkey->action = [&] {
        ++others;
    };
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_actions, 0);
    QCOMPARE(others, 1);
}

void GlobalHotkeyTest::livesUntilTheActionHasRun()
{
    auto hotkey = listener();
    const std::weak_ptr watched = hotkey;
    hotkey->start();
    QVERIFY(m_platform->keyTap.press(commandShiftO));
    hotkey->stop();
    hotkey.reset();
    QVERIFY(!watched.expired());
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_actions, 1);
    QVERIFY(watched.expired());
}

void GlobalHotkeyTest::startsOnce()
{
    const auto hotkey = listener();
    hotkey->start();
    hotkey->start();
    QCOMPARE(m_platform->keyTap.createCount, 1);
    QCOMPARE(m_platform->keyTap.promptCount, 1);
    QVERIFY(press(commandShiftO));
    QCOMPARE(m_actions, 1);
}

void GlobalHotkeyTest::stopsAndStartsAgain()
{
    const auto hotkey = listener();
    hotkey->stop();
    hotkey->start();
    hotkey->stop();
    hotkey->stop();
    QVERIFY(!hotkey->isRunning());
    QVERIFY(!press(commandShiftO));
    hotkey->start();
    QVERIFY(press(commandShiftO));
    QCOMPARE(m_platform->keyTap.createCount, 2);
    QCOMPARE(m_actions, 1);
}

void GlobalHotkeyTest::asksForTrustAtEachStart()
{
    m_platform->keyTap.trusted = false;
    const auto hotkey = listener();
    hotkey->start();
    hotkey->start();
    QCOMPARE(m_platform->keyTap.promptCount, 2);
    m_platform->keyTap.trusted = true;
    hotkey->start();
    QVERIFY(hotkey->isRunning());
    QCOMPARE(m_denials, 2);
}

void GlobalHotkeyTest::tellsOfADenial()
{
    m_platform->keyTap.trusted = false;
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrusted});
    QCOMPARE(m_denials, 1);
    QCOMPARE(m_platform->keyTap.createCount, 0);
}

void GlobalHotkeyTest::managesWithoutADenialHandler()
{
    m_platform->keyTap.trusted = false;
    const auto hotkey = GlobalHotkey::make([] {});
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrusted});
}

void GlobalHotkeyTest::logsATapThatCannotBeCreated()
{
    m_platform->keyTap.taken = {commandShiftO};
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreated});
    QCOMPARE(m_denials, 0);
    m_platform->keyTap.taken.clear();
    hotkey->start();
    QVERIFY(hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void GlobalHotkeyTest::followsAConfigurationWhileRunning()
{
    const auto hotkey = listener();
    hotkey->start();
    hotkey->configure(u"ctrl+k"_s);
    QCOMPARE(m_platform->keyTap.createCount, 1);
    QVERIFY(m_platform->keyTap.tapped() == (KeyCombination{40, KeyFlags::control}));
    QVERIFY(!press(commandShiftO));
    QVERIFY(press({40, KeyFlags::control}));
    hotkey->setKeyCode(0);
    QVERIFY(press({0, KeyFlags::control}));
    hotkey->setModifiers(command);
    QVERIFY(press({0, command}));
    QVERIFY(m_platform->keyTap.tapped() == (KeyCombination{0, command}));
    QCOMPARE(m_actions, 3);
}

void GlobalHotkeyTest::staysDeafOnATakenConfiguration()
{
    m_platform->keyTap.taken = {{40, KeyFlags::control}};
    const auto hotkey = listener();
    hotkey->start();
    hotkey->configure(u"ctrl+k"_s);
    QVERIFY(hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreated});
    hotkey->configure(u"ctrl+j"_s);
    QVERIFY(press({38, KeyFlags::control}));
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void GlobalHotkeyTest::firesOnBareKeys()
{
    const auto hotkey = listener();
    hotkey->configure(u"o"_s);
    hotkey->start();
    QVERIFY(press({31, 0}));
    QVERIFY(!press({31, shift}));
    QCOMPARE(m_actions, 1);
}

void GlobalHotkeyTest::delegateStartsOnlyWhenOnAndTrusted_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("trusted");
    QTest::newRow("off") << false << true;
    QTest::newRow("not trusted") << true << false;
    QTest::newRow("on and trusted") << true << true;
}

void GlobalHotkeyTest::delegateStartsOnlyWhenOnAndTrusted()
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

void GlobalHotkeyTest::delegateCapturesOnTheShortcut()
{
    launch(true, u"cmd+shift+o"_s);
    QVERIFY(press(commandShiftO));
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void GlobalHotkeyTest::delegateFollowsTheShortcut()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
    QVERIFY(m_platform->keyTap.tapped() ==
            (KeyCombination{23, KeyFlags::control | KeyFlags::option}));
    QVERIFY(!press(commandShiftO));
    QVERIFY(press({23, KeyFlags::control | KeyFlags::option}));
}

void GlobalHotkeyTest::delegateIgnoresTheShortcutWhileOff()
{
    launch(false, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    QCOMPARE(m_platform->keyTap.createCount, 0);
    QCOMPARE(m_platform->keyTap.promptCount, 0);
    Settings::shared().setHotkeyEnabled(true);
    QVERIFY(m_platform->keyTap.tapped() ==
            (KeyCombination{23, KeyFlags::control | KeyFlags::option}));
}

void GlobalHotkeyTest::delegateFollowsTheSwitch()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyEnabled(false);
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QVERIFY(!press(commandShiftO));
    Settings::shared().setHotkeyEnabled(true);
    QVERIFY(press(commandShiftO));
}

void GlobalHotkeyTest::delegateRestartsOnTheSameValue()
{
    launch(true, u"cmd+shift+o"_s);
    Settings::shared().setHotkeyEnabled(true);
    Settings::shared().setHotkeyString(u"cmd+shift+o"_s);
    QCOMPARE(m_platform->keyTap.createCount, 3);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
}

void GlobalHotkeyTest::delegateSwitchesOffOnADenial()
{
    launch(false, u"cmd+shift+o"_s);
    m_platform->keyTap.trusted = false;
    Settings::shared().setHotkeyEnabled(true);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!Settings::shared().hotkeyEnabled());
    QVERIFY(!m_platform->userDefaults().boolean(u"hotkeyEnabled"_s));
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCOMPARE(m_platform->keyTap.promptCount, 1);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrusted});

    // The same while it was on, when another shortcut is recorded.
    m_platform->keyTap.trusted = true;
    Settings::shared().setHotkeyEnabled(true);
    m_platform->keyTap.trusted = false;
    Settings::shared().setHotkeyString(u"ctrl+k"_s);
    QVERIFY(!Settings::shared().hotkeyEnabled());
    QCOMPARE(Settings::shared().hotkeyString(), u"ctrl+k"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
}

void GlobalHotkeyTest::delegateStaysOnWhenTheKeyIsTaken()
{
    m_platform->keyTap.taken = {commandShiftO};
    launch(true, u"cmd+shift+o"_s);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreated});
    QVERIFY(Settings::shared().hotkeyEnabled());
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    // Recording another one recovers.
    Settings::shared().setHotkeyString(u"cmd+shift+p"_s);
    QVERIFY(press({35, command | shift}));
    QCOMPARE(m_platform->overlaySurface.shown.size(), 1);
}

void GlobalHotkeyTest::delegateFreesTheKeyAtTheEnd()
{
    launch(true, u"cmd+shift+o"_s);
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
    m_delegate.reset();
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    Settings::shared().setHotkeyString(u"ctrl+k"_s);
    QCOMPARE(m_platform->keyTap.createCount, 1);
}

QTEST_MAIN(GlobalHotkeyTest)
#include "GlobalHotkeyTest.moc"
