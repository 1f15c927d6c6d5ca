// SPDX-License-Identifier: MIT
// The key tap on a real X server, seen from another program on it.
#include "Platform/X11/X11KeyTap.h"

#include "Support/X11Keys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr KeyCombination commandShiftO{31, KeyFlags::command | KeyFlags::shift};
constexpr quint16 shiftBit = XCB_MOD_MASK_SHIFT;
constexpr quint16 superBit = XCB_MOD_MASK_4;
constexpr quint16 numLockBit = XCB_MOD_MASK_2;
const QList<xcb_keycode_t> shortcutKeys{X11KeyCode::super, X11KeyCode::shift, X11KeyCode::o};
const QString holdArgument = u"--hold"_s;

/// Another process that has the shortcut, until it is told to end or is killed.
int holdShortcut()
{
    X11KeyTap keyTap;
    const auto tap = keyTap.createTap(commandShiftO, [](const KeyCombination &) { return true; });
    std::puts(tap ? "held" : "refused");
    std::fflush(stdout);
    return tap ? QCoreApplication::exec() : 1;
}

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(testPatience) && process.exitCode() == 0;
}
} // namespace

class X11KeyTapTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<KeyTap::Tap> tap(const KeyCombination &combination);
    /// Types the keys; the number of presses the tap heard once the server has handled them all.
    qsizetype heardOf(const QList<xcb_keycode_t> &keys);

    X11KeyTap m_keyTap;
    std::unique_ptr<X11Keys> m_keys;
    QList<KeyCombination> m_heard;

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void isTrusted();
    void pressIsHeardAndSwallowed();
    void otherModifiersAreNotHeard();
    void locksDoNotMatter_data();
    void locksDoNotMatter();
    void bareKey();
    void heldKeyRepeats();
    void anotherProgramHoldsTheKeyboard();
    void givesTheKeyboardBackAtOnce();
    void takenCombination();
    void takenUnderOneLockOnly();
    void unknownKey();
    void changedWhileRunning();
    void changedToATakenOne();
    void freedAtTheEnd();
    void immediatelyAgain();
    void freedWhenKilled();
    void layouts_data();
    void layouts();
    void layoutChangedWhileRunning();
    void modifierMovedWhileRunning();
    void escapeWhereverItIs();
};

void X11KeyTapTest::initTestCase()
{
    m_keys = std::make_unique<X11Keys>();
    QVERIFY(run(u"setxkbmap"_s, {u"us"_s}));
}

void X11KeyTapTest::init()
{
    m_heard.clear();
    m_keys->takeFocus();
    m_keys->pressesSeen();
    QCOMPARE(m_keys->state() & 0xff, 0);
}

void X11KeyTapTest::cleanup()
{
    QVERIFY(run(u"setxkbmap"_s, {u"us"_s, u"-option"_s, u""_s}));
}

std::unique_ptr<KeyTap::Tap> X11KeyTapTest::tap(const KeyCombination &combination)
{
    return m_keyTap.createTap(combination, [this](const KeyCombination &pressed) {
        m_heard << pressed;
        return true;
    });
}

qsizetype X11KeyTapTest::heardOf(const QList<xcb_keycode_t> &keys)
{
    m_heard.clear();
    m_keys->type(keys);
    // A press that comes to us lies in our socket by now: reading it takes one pass of the loop.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    return m_heard.size();
}

void X11KeyTapTest::isTrusted()
{
    QVERIFY(m_keyTap.isProcessTrusted());
    QVERIFY(m_keyTap.isProcessTrustedWithPrompt());
}

void X11KeyTapTest::pressIsHeardAndSwallowed()
{
    m_keys->type(shortcutKeys);
    QCOMPARE(m_keys->pressesSeen(), shortcutKeys);

    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QCOMPARE(heardOf(shortcutKeys), 1);
    QCOMPARE(m_heard.first(), commandShiftO);
    QCOMPARE(m_keys->pressesSeen(), (QList<xcb_keycode_t>{X11KeyCode::super, X11KeyCode::shift}));

    // What is typed next goes where it belongs.
    m_keys->type({X11KeyCode::k});
    QCOMPARE(m_keys->pressesSeen(), QList<xcb_keycode_t>{X11KeyCode::k});
}

void X11KeyTapTest::otherModifiersAreNotHeard()
{
    using namespace X11KeyCode;
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    for (const auto &keys :
         {QList<xcb_keycode_t>{o}, QList<xcb_keycode_t>{super, o}, QList<xcb_keycode_t>{shift, o},
          QList<xcb_keycode_t>{super, shift, alt, o},
          QList<xcb_keycode_t>{super, shift, control, o}, QList<xcb_keycode_t>{super, shift, k}}) {
        QCOMPARE(heardOf(keys), 0);
        QCOMPARE(m_keys->pressesSeen(), keys);
    }
    QCOMPARE(heardOf(shortcutKeys), 1);
}

void X11KeyTapTest::locksDoNotMatter_data()
{
    using namespace X11KeyCode;
    QTest::addColumn<QList<xcb_keycode_t>>("locks");
    QTest::addColumn<quint16>("state");
    QTest::newRow("Caps Lock") << QList<xcb_keycode_t>{capsLock} << quint16(XCB_MOD_MASK_LOCK);
    QTest::newRow("Num Lock") << QList<xcb_keycode_t>{numLock} << numLockBit;
    QTest::newRow("both") << QList<xcb_keycode_t>{capsLock, numLock}
                          << quint16(XCB_MOD_MASK_LOCK | numLockBit);
}

void X11KeyTapTest::locksDoNotMatter()
{
    QFETCH(const QList<xcb_keycode_t>, locks);
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    const auto toggleLocks = [&] {
        for (const xcb_keycode_t lock : locks) {
            m_keys->type({lock});
        }
    };
    toggleLocks();
    QTEST(quint16(m_keys->state() & 0xff), "state");
    m_keys->pressesSeen();
    const qsizetype heard = heardOf(shortcutKeys);
    const auto seen = m_keys->pressesSeen();
    const qsizetype heardWithMore =
        heardOf({X11KeyCode::alt, X11KeyCode::super, X11KeyCode::shift, X11KeyCode::o});
    toggleLocks();
    QCOMPARE(heard, 1);
    QVERIFY(!seen.contains(X11KeyCode::o));
    QCOMPARE(heardWithMore, 0);
}

void X11KeyTapTest::bareKey()
{
    const auto running = tap({31, 0});
    QVERIFY(running);
    QCOMPARE(heardOf({X11KeyCode::o}), 1);
    QCOMPARE(m_heard.first(), (KeyCombination{31, 0}));
    QCOMPARE(heardOf({X11KeyCode::shift, X11KeyCode::o}), 0);
}

void X11KeyTapTest::heldKeyRepeats()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    for (const xcb_keycode_t key : shortcutKeys) {
        m_keys->press(key);
    }
    const bool repeated = QTest::qWaitFor([this] { return m_heard.size() >= 4; }, testPatience);
    for (const xcb_keycode_t key : shortcutKeys) {
        m_keys->release(key);
    }
    QVERIFY2(repeated, qPrintable(QString::number(m_heard.size())));
    QVERIFY(!m_keys->pressesSeen().contains(X11KeyCode::o));
}

void X11KeyTapTest::anotherProgramHoldsTheKeyboard()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QVERIFY(m_keys->grabKeyboard());
    QCOMPARE(heardOf(shortcutKeys), 0);
    QCOMPARE(m_keys->pressesSeen(), shortcutKeys);
    m_keys->ungrabKeyboard();
    QCOMPARE(heardOf(shortcutKeys), 1);
}

void X11KeyTapTest::givesTheKeyboardBackAtOnce()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    for (const xcb_keycode_t key : shortcutKeys) {
        m_keys->press(key);
    }
    // It repeats when it is held for long.
    QTRY_VERIFY(!m_heard.isEmpty());
    // While the shortcut is still held, what it opened may take the keyboard.
    QTRY_VERIFY(m_keys->grabKeyboard());
    m_keys->ungrabKeyboard();
    for (const xcb_keycode_t key : shortcutKeys) {
        m_keys->release(key);
    }
}

void X11KeyTapTest::takenCombination()
{
    QVERIFY(m_keys->grab(X11KeyCode::o, shiftBit | superBit));
    QVERIFY(!tap(commandShiftO));
    // Nothing of it was kept.
    QVERIFY(m_keys->canGrab(X11KeyCode::o, shiftBit | superBit | XCB_MOD_MASK_LOCK));
    // Another one can be had.
    QVERIFY(tap({40, commandShiftO.flags}));
    m_keys->ungrab(X11KeyCode::o, shiftBit | superBit);
    QVERIFY(tap(commandShiftO));
}

void X11KeyTapTest::takenUnderOneLockOnly()
{
    QVERIFY(m_keys->grab(X11KeyCode::o, shiftBit | superBit | numLockBit));
    QVERIFY(!tap(commandShiftO));
    QVERIFY(m_keys->canGrab(X11KeyCode::o, shiftBit | superBit));
    m_keys->ungrab(X11KeyCode::o, shiftBit | superBit | numLockBit);
}

void X11KeyTapTest::unknownKey()
{
    QVERIFY(!tap({999, KeyFlags::command}));
}

void X11KeyTapTest::changedWhileRunning()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QVERIFY(running->setCombination({40, KeyFlags::control | KeyFlags::option}));
    QCOMPARE(heardOf(shortcutKeys), 0);
    QVERIFY(m_keys->pressesSeen().contains(X11KeyCode::o));
    QCOMPARE(heardOf({X11KeyCode::control, X11KeyCode::alt, X11KeyCode::k}), 1);
    QVERIFY(!m_keys->pressesSeen().contains(X11KeyCode::k));
}

void X11KeyTapTest::changedToATakenOne()
{
    QVERIFY(m_keys->grab(X11KeyCode::k, superBit));
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QVERIFY(!running->setCombination({40, KeyFlags::command}));
    QCOMPARE(heardOf(shortcutKeys), 0);
    QVERIFY(running->setCombination(commandShiftO));
    QCOMPARE(heardOf(shortcutKeys), 1);
    m_keys->ungrab(X11KeyCode::k, superBit);
}

void X11KeyTapTest::freedAtTheEnd()
{
    auto running = tap(commandShiftO);
    QVERIFY(running);
    for (const quint16 locks : {0, XCB_MOD_MASK_LOCK + 0, numLockBit + 0}) {
        QVERIFY(!m_keys->canGrab(X11KeyCode::o, quint16(shiftBit | superBit | locks)));
    }
    running.reset();
    for (const quint16 locks : {0, XCB_MOD_MASK_LOCK + 0, numLockBit + 0}) {
        QVERIFY(m_keys->canGrab(X11KeyCode::o, quint16(shiftBit | superBit | locks)));
    }
}

void X11KeyTapTest::immediatelyAgain()
{
    for (int round = 0; round < 200; ++round) {
        QVERIFY(tap(commandShiftO));
    }
}

void X11KeyTapTest::freedWhenKilled()
{
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(), {holdArgument});
    QVERIFY(other.waitForReadyRead(testPatience));
    QCOMPARE(other.readAll(), "held\n");
    QVERIFY(!m_keys->canGrab(X11KeyCode::o, shiftBit | superBit));
    QVERIFY(!tap(commandShiftO));
    other.kill();
    QVERIFY(other.waitForFinished(testPatience));
    QTRY_VERIFY(m_keys->canGrab(X11KeyCode::o, shiftBit | superBit));
}

void X11KeyTapTest::layouts_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("labelOfO");
    QTest::addColumn<QString>("labelOfQ");
    QTest::newRow("us") << u"us"_s << u"O"_s << u"Q"_s;
    QTest::newRow("de") << u"de"_s << u"O"_s << u"Q"_s;
    QTest::newRow("fr") << u"fr"_s << u"O"_s << u"A"_s;
    QTest::newRow("ru") << u"ru"_s << u"Щ"_s << u"Й"_s;
    QTest::newRow("ara") << u"ara"_s << u"خ"_s << u"ض"_s;
    QTest::newRow("dvorak") << u"dvorak"_s << u"R"_s << u"'"_s;
}

void X11KeyTapTest::layouts()
{
    QFETCH(const QString, layout);
    QVERIFY(run(u"setxkbmap"_s, {layout}));
    QTEST(m_keyTap.keyLabel(31), "labelOfO");
    QTEST(m_keyTap.keyLabel(12), "labelOfQ");

    // The key is the one at the place of the ANSI keyboard's O.
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QCOMPARE(heardOf(shortcutKeys), 1);

    // And the recorder takes the same key for it.
    const QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::MetaModifier | Qt::ShiftModifier,
                          X11KeyCode::o, 0, 0);
    QVERIFY(m_keyTap.combination(event) == commandShiftO);
    const QKeyEvent all(QEvent::KeyPress, Qt::Key_unknown,
                        Qt::MetaModifier | Qt::ShiftModifier | Qt::ControlModifier |
                            Qt::AltModifier | Qt::KeypadModifier,
                        X11KeyCode::q, 0, 0);
    QVERIFY(m_keyTap.combination(all) == (KeyCombination{12, KeyFlags::mask}));
    const QKeyEvent modifierAlone(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier,
                                  X11KeyCode::shift, 0, 0);
    QVERIFY(!m_keyTap.combination(modifierAlone));
}

void X11KeyTapTest::layoutChangedWhileRunning()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    for (const QString &layout : {u"de"_s, u"fr"_s, u"ru"_s, u"ara"_s, u"us"_s}) {
        QVERIFY(run(u"setxkbmap"_s, {layout}));
        QCOMPARE(heardOf(shortcutKeys), 1);
        QVERIFY(!m_keys->pressesSeen().contains(X11KeyCode::o));
    }
    // Two layouts, the second one in use.
    QVERIFY(run(u"setxkbmap"_s, {u"us,ru"_s, u"-option"_s, u"grp:ctrls_toggle"_s}));
    m_keys->type({X11KeyCode::control, 105});
    QCOMPARE(m_keyTap.keyLabel(31), u"Щ"_s);
    QCOMPARE(heardOf(shortcutKeys), 1);
    m_keys->type({X11KeyCode::control, 105});
    QCOMPARE(m_keyTap.keyLabel(31), u"O"_s);
    QCOMPARE(heardOf(shortcutKeys), 1);
}

void X11KeyTapTest::modifierMovedWhileRunning()
{
    const auto running = tap(commandShiftO);
    QVERIFY(running);
    QVERIFY(run(u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod3"_s, u"-e"_s,
                               u"add mod3 = Super_L Super_R"_s}));
    QTRY_VERIFY(!m_keys->canGrab(X11KeyCode::o, shiftBit | XCB_MOD_MASK_3));
    QVERIFY(m_keys->canGrab(X11KeyCode::o, shiftBit | superBit));
    QCOMPARE(heardOf(shortcutKeys), 1);
}

void X11KeyTapTest::escapeWhereverItIs()
{
    QVERIFY(run(u"setxkbmap"_s, {u"us"_s, u"-option"_s, u"caps:swapescape"_s}));
    const QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, X11KeyCode::capsLock, 0,
                          0);
    QVERIFY(m_keyTap.combination(event) == (KeyCombination{53, 0}));
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(holdArgument)) {
        return holdShortcut();
    }
    X11KeyTapTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11KeyTapTest.moc"
