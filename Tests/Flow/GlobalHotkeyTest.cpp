// SPDX-License-Identifier: MIT
#include "GlobalHotkey.h"

#include "HotkeyExpectations.h"
#include "Support/FakePlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr quint64 command = KeyFlags::command;
constexpr quint64 shift = KeyFlags::shift;
constexpr quint64 capsLock = 0x10000;
constexpr quint64 numericPad = 0x200000;
constexpr quint64 function = 0x800000;
constexpr quint64 leftCommandDevice = 0x8;
} // namespace

/// The listener by itself.
class GlobalHotkeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    void stopsOnALateDenial();
    void stopsOnALateFailure();
    void followsAConfigurationWhileRunning();
    void staysDeafOnATakenConfiguration();
    void leavesTheTapsOwnReason();
    void firesOnBareKeys();

private:
    std::shared_ptr<GlobalHotkey> listener();
    bool press(const KeyCombination &combination);
    /// What the settings show.
    QString problem() const { return m_platform->keyTap.givenKeys().problem(); }

    std::unique_ptr<FakePlatform> m_platform;
    int m_actions = 0;
    int m_denials = 0;
};

void GlobalHotkeyTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_actions = 0;
    m_denials = 0;
}

void GlobalHotkeyTest::cleanup()
{
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    QCoreApplication::sendPostedEvents();
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
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrustedLine});
    QCOMPARE(m_denials, 1);
    QCOMPARE(m_platform->keyTap.createCount, 0);
}

void GlobalHotkeyTest::managesWithoutADenialHandler()
{
    m_platform->keyTap.trusted = false;
    const auto hotkey = GlobalHotkey::make([] {});
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrustedLine});
}

void GlobalHotkeyTest::logsATapThatCannotBeCreated()
{
    m_platform->keyTap.taken = {commandShiftO};
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreatedLine});
    QCOMPARE(m_denials, 0);
    QVERIFY(problem().contains(u"another program or the desktop has it"));
    m_platform->keyTap.taken.clear();
    hotkey->start();
    QVERIFY(hotkey->isRunning());
    QCOMPARE(problem(), QString());
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void GlobalHotkeyTest::stopsOnALateDenial()
{
    const auto hotkey = listener();
    hotkey->start();
    m_platform->keyTap.end(KeyTap::Tap::End::Denied);
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(m_platform->systemLog.lines, QStringList{notTrustedLine});
    QCOMPARE(m_denials, 1);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_platform->keyTap.tapCount(), 0);
    hotkey->start();
    QVERIFY(press(commandShiftO));
}

void GlobalHotkeyTest::stopsOnALateFailure()
{
    const auto hotkey = listener();
    hotkey->start();
    m_platform->keyTap.end(KeyTap::Tap::End::Failed);
    QVERIFY(!hotkey->isRunning());
    QVERIFY(problem().contains(u"no longer listens"));
    // Started again before the former tap is gone.
    hotkey->start();
    QCOMPARE(problem(), QString());
    QCoreApplication::sendPostedEvents();
    QVERIFY(hotkey->isRunning());
    QCOMPARE(m_platform->keyTap.tapCount(), 1);
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreatedLine});
    QCOMPARE(m_denials, 0);
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
    QCOMPARE(m_platform->systemLog.lines, QStringList{notCreatedLine});
    QVERIFY(problem().contains(u"another program or the desktop has it"));
    hotkey->configure(u"ctrl+j"_s);
    QCOMPARE(problem(), QString());
    QVERIFY(press({38, KeyFlags::control}));
    QCOMPARE(m_platform->systemLog.lines.size(), 1);
}

void GlobalHotkeyTest::leavesTheTapsOwnReason()
{
    m_platform->keyTap.unboundReason = u"Bind it yourself."_s;
    const auto hotkey = listener();
    hotkey->start();
    QVERIFY(!hotkey->isRunning());
    QCOMPARE(problem(), u"Bind it yourself."_s);
    hotkey->stop();
    QCOMPARE(problem(), QString());
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

QTEST_MAIN(GlobalHotkeyTest)
#include "GlobalHotkeyTest.moc"
