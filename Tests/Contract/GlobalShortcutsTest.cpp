// SPDX-License-Identifier: MIT
// Shortcuts of the GlobalShortcuts portal, which a small object plays here in the ways that portals
// have.

#include "Platform/Portal/GlobalShortcutsKey.h"
#include "Platform/Portal/GlobalShortcutsKeyTap.h"
#include "Platform/Portal/PortalApplication.h"
#include "Platform/Portal/PortalShortcut.h"
#include "Support/GlobalShortcutsPortal.h"

#include <QGuiApplication>
#include <QTest>

#include <chrono>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr KeyCombination commandShiftO{31, KeyFlags::command | KeyFlags::shift};
constexpr KeyCombination controlK{40, KeyFlags::control};

/// Asked from another thread: it waits for the portal, which this one plays.
bool isOffered()
{
    auto answer = std::async(std::launch::async, GlobalShortcutsKeyTap::isOffered);
    return QTest::qWaitFor([&answer] { return answer.wait_for(0s) == std::future_status::ready; },
                           testPatience) &&
           answer.get();
}

class ListLog : public SystemLog
{
public:
    QStringList lines;

protected:
    void write(const QString &line) override { lines << line; }
};
} // namespace

class GlobalShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void programIsNamedBeforeAnythingElse();
    void isOfferedWhereADesktopStandsBehindIt();
    void pressIsHeard();
    void keysThatAreCalledAFailureButNamed();
    void otherPressesAreNot();
    void keysAreProposed();
    void anotherCombinationTakesAnotherSession();
    void sessionIsClosedAtTheEnd();
    void userSaysNo();
    void userIsStillAsked();
    void questionIsCalledOff();
    void oddAnswers_data();
    void oddAnswers();
    void noAnswer();
    void portalEndsBeforeItAnswers();
    void portalIsStartedAnew();
    void portalClosesTheSession();
    void otherKeysAreTold_data();
    void otherKeysAreTold();
    void laterChangesAreTold();
    void otherKeysAreForgottenWithTheSession();
    void keyWithoutAName();

private:
    using End = KeyTap::Tap::End;
    std::unique_ptr<KeyTap::Tap> bound(const KeyCombination &combination = commandShiftO);
    std::unique_ptr<KeyTap::Tap> asked(const KeyCombination &combination = commandShiftO);

    ListLog m_log;
    GlobalShortcutsKeyTap m_keyTap{m_log};
    std::unique_ptr<GlobalShortcutsPortal> m_portal;
    QList<KeyCombination> m_presses;
    QList<End> m_ends;
};

void GlobalShortcutsTest::initTestCase()
{
    // No compositor, so no keyboard of anybody's.
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("XKB_DEFAULT_LAYOUT", "us");
    QGuiApplication::setDesktopFileName(u"org.example.Keys"_s);
}

void GlobalShortcutsTest::init()
{
    m_log.lines.clear();
    m_presses.clear();
    m_ends.clear();
    m_portal = std::make_unique<GlobalShortcutsPortal>();
    QVERIFY(m_portal->isUp());
}

void GlobalShortcutsTest::cleanup()
{
    m_portal.reset();
}

/// A tap that the portal has been asked for.
std::unique_ptr<KeyTap::Tap> GlobalShortcutsTest::asked(const KeyCombination &combination)
{
    auto tap = m_keyTap.createTap(combination, [this](const KeyCombination &pressed) {
        m_presses << pressed;
        return true;
    });
    if (tap) {
        tap->onEnd = [this](End end) {
            m_ends << end;
        };
    }
    return tap;
}

/// A tap whose key the portal has given.
std::unique_ptr<KeyTap::Tap> GlobalShortcutsTest::bound(const KeyCombination &combination)
{
    const auto count = m_portal->bound.size();
    auto tap = asked(combination);
    [[maybe_unused]] const bool isBound =
        QTest::qWaitFor([&] { return m_portal->bound.size() > count; }, testPatience);
    return tap;
}

void GlobalShortcutsTest::programIsNamedBeforeAnythingElse()
{
    QVERIFY(isOffered());
    QCOMPARE(m_portal->registered, QStringList{u"org.example.Keys"_s});
    QVERIFY(!m_portal->wasAskedBeforeRegistration);
    QCOMPARE(portalApplicationId(), u"org.example.Keys"_s);
}

void GlobalShortcutsTest::isOfferedWhereADesktopStandsBehindIt()
{
    QVERIFY(isOffered());
    m_portal->withdrawInterface();
    QVERIFY(!isOffered());
}

void GlobalShortcutsTest::pressIsHeard()
{
    const auto tap = bound();
    QVERIFY(tap);
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    QVERIFY(m_presses.first() == commandShiftO);
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 2);
    QVERIFY(m_ends.isEmpty());
    QCOMPARE(m_log.lines, QStringList());
}

/// As GNOME 48 answers when its user has added the shortcut.
void GlobalShortcutsTest::keysThatAreCalledAFailureButNamed()
{
    m_portal->bindResponse = 2;
    const auto tap = bound();
    QVERIFY(tap);
    QTRY_VERIFY(m_portal->isAnswered());
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    QVERIFY(m_ends.isEmpty());
    QVERIFY(m_portal->closed.isEmpty());
}

void GlobalShortcutsTest::otherPressesAreNot()
{
    const auto tap = bound();
    m_portal->press(u"another"_s);
    m_portal->press(u"capture"_s, u"/org/freedesktop/portal/desktop/session/1_1/other"_s);
    // Signals keep their order.
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
}

void GlobalShortcutsTest::keysAreProposed()
{
    const auto tap = bound();
    QCOMPARE(m_portal->bound.size(), 1);
    const PortalShortcut shortcut = m_portal->bound.first();
    QCOMPARE(shortcut.id, u"capture"_s);
    QCOMPARE(shortcut.properties.value(u"preferred_trigger"_s), u"SHIFT+LOGO+o"_s);
    QVERIFY(!shortcut.properties.value(u"description"_s).toString().isEmpty());
}

void GlobalShortcutsTest::anotherCombinationTakesAnotherSession()
{
    const auto tap = bound();
    const QString former = m_portal->session;
    QVERIFY(tap->setCombination(controlK));
    QTRY_COMPARE(m_portal->bound.size(), 2);
    QCOMPARE(m_portal->closed, QStringList{former});
    QVERIFY(m_portal->session != former);
    QCOMPARE(m_portal->bound.last().properties.value(u"preferred_trigger"_s), u"CTRL+k"_s);
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    QVERIFY(m_presses.first() == controlK);
}

void GlobalShortcutsTest::sessionIsClosedAtTheEnd()
{
    auto tap = bound();
    QTRY_VERIFY(m_portal->isAnswered());
    tap.reset();
    QTRY_COMPARE(m_portal->closed, QStringList{m_portal->session});
    m_portal->press();
    QTRY_COMPARE(m_portal->pressCount(), 1);
    QVERIFY(m_presses.isEmpty());
    QVERIFY(m_ends.isEmpty());
}

void GlobalShortcutsTest::userSaysNo()
{
    m_portal->bindResponse = 1;
    const auto tap = asked();
    QVERIFY(tap);
    QTRY_COMPARE(m_ends, QList<End>{End::Denied});
    QTRY_COMPARE(m_portal->closed, QStringList{m_portal->session});
}

void GlobalShortcutsTest::userIsStillAsked()
{
    m_portal->isBindSilent = true;
    const auto tap = bound();
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    QVERIFY(m_ends.isEmpty());
}

void GlobalShortcutsTest::questionIsCalledOff()
{
    m_portal->isBindSilent = true;
    auto tap = bound();
    QTRY_VERIFY(!m_portal->request.isEmpty());
    tap.reset();
    QTRY_COMPARE(m_portal->calledOff, QStringList{m_portal->request});
    QVERIFY(m_ends.isEmpty());
}

void GlobalShortcutsTest::oddAnswers_data()
{
    QTest::addColumn<int>("oddity");
    QTest::newRow("error instead of a session") << int(GlobalShortcutsPortal::NoSession);
    QTest::newRow("session without a name") << int(GlobalShortcutsPortal::NamelessSession);
    QTest::newRow("session of another kind") << int(GlobalShortcutsPortal::NumberForSession);
    QTest::newRow("session refused") << int(GlobalShortcutsPortal::RefusedSession);
    QTest::newRow("error instead of shortcuts") << int(GlobalShortcutsPortal::NoShortcuts);
    QTest::newRow("no shortcut") << int(GlobalShortcutsPortal::EmptyShortcuts);
    QTest::newRow("another shortcut") << int(GlobalShortcutsPortal::OtherShortcut);
    QTest::newRow("shortcuts of another kind") << int(GlobalShortcutsPortal::TextForShortcuts);
    QTest::newRow("a response of its own") << int(GlobalShortcutsPortal::UnknownResponse);
}

void GlobalShortcutsTest::oddAnswers()
{
    QFETCH(const int, oddity);
    m_portal->oddity = GlobalShortcutsPortal::Oddity(oddity);
    const auto tap = asked();
    QVERIFY(tap);
    QTRY_COMPARE(m_ends, QList<End>{End::Failed});
    m_portal->press();
    QTRY_COMPARE(m_portal->pressCount(), 1);
    QVERIFY(m_presses.isEmpty());
}

void GlobalShortcutsTest::noAnswer()
{
    m_portal->isSessionSilent = true;
    GivenKeys given;
    GlobalShortcutsKey key([](const KeyCombination &) { return true; }, given, m_log, 50ms);
    key.onEnd = [this](End end) {
        m_ends << end;
    };
    QVERIFY(key.setCombination(commandShiftO));
    QTRY_COMPARE(m_ends, QList<End>{End::Failed});
}

void GlobalShortcutsTest::portalEndsBeforeItAnswers()
{
    m_portal->isBindSilent = true;
    const auto tap = bound();
    m_portal.reset();
    QTRY_COMPARE(m_ends, QList<End>{End::Failed});
}

void GlobalShortcutsTest::portalIsStartedAnew()
{
    const auto tap = bound();
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    m_portal.reset();
    m_portal = std::make_unique<GlobalShortcutsPortal>();
    QTRY_COMPARE(m_portal->bound.size(), 1);
    QCOMPARE(m_portal->registered, QStringList{u"org.example.Keys"_s});
    QVERIFY(!m_portal->wasAskedBeforeRegistration);
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 2);
    QVERIFY(m_ends.isEmpty());
}

void GlobalShortcutsTest::portalClosesTheSession()
{
    const auto tap = bound();
    m_portal->closeSession();
    QTRY_COMPARE(m_ends, QList<End>{End::Failed});
}

void GlobalShortcutsTest::otherKeysAreTold_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<bool>("isTold");
    QTest::newRow("GNOME's way") << u"Press <Shift><Super>o"_s << false;
    QTest::newRow("Plasma's way") << u"Meta+Shift+O"_s << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("another key") << u"Meta+Shift+P"_s << true;
    QTest::newRow("another modifier") << u"Ctrl+Shift+O"_s << true;
    QTest::newRow("one modifier more") << u"Ctrl+Meta+Shift+O"_s << true;
    QTest::newRow("another language") << u"Umschalt+Super+O drücken"_s << true;
}

void GlobalShortcutsTest::otherKeysAreTold()
{
    QFETCH(const QString, description);
    QFETCH(const bool, isTold);
    m_portal->description = description;
    const auto tap = bound();
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    const QStringList told{u"The desktop gave the shortcut other keys: "_s + description};
    QCOMPARE(m_log.lines, isTold ? told : QStringList());
    QCOMPARE(m_keyTap.givenKeys().description(), isTold ? description : QString());
}

void GlobalShortcutsTest::laterChangesAreTold()
{
    const auto tap = bound();
    m_portal->change(u"F9"_s);
    const QStringList told{u"The desktop gave the shortcut other keys: F9"_s};
    QTRY_COMPARE(m_log.lines, told);
    m_portal->change(u"F9"_s);
    m_portal->press();
    QTRY_COMPARE(m_presses.size(), 1);
    QCOMPARE(m_log.lines, told);
    QCOMPARE(m_keyTap.givenKeys().description(), u"F9"_s);
    m_portal->change(u"Meta+Shift+O"_s);
    QTRY_COMPARE(m_keyTap.givenKeys().description(), QString());
}

void GlobalShortcutsTest::otherKeysAreForgottenWithTheSession()
{
    m_portal->description = u"F9"_s;
    auto tap = bound();
    QTRY_COMPARE(m_keyTap.givenKeys().description(), u"F9"_s);
    tap.reset();
    QCOMPARE(m_keyTap.givenKeys().description(), QString());

    tap = bound();
    QTRY_COMPARE(m_keyTap.givenKeys().description(), u"F9"_s);
    m_portal->closeSession();
    QTRY_COMPARE(m_keyTap.givenKeys().description(), QString());
}

void GlobalShortcutsTest::keyWithoutAName()
{
    QVERIFY(!asked({65535, 0}));
    QVERIFY(m_portal->session.isEmpty());
}

QTEST_MAIN(GlobalShortcutsTest)
#include "GlobalShortcutsTest.moc"
