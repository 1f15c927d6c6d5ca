// SPDX-License-Identifier: MIT
// Combinations in kglobalaccel's numbers, on the default layout of the system.

#include "Platform/KDE/GlobalAccelKeys.h"

#include "Platform/KeyTap.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QTest>

class GlobalAccelKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void letters();
    void digitsWithShift();
    void keysWithoutCharacter();
};

void GlobalAccelKeysTest::initTestCase()
{
    // No compositor, so no keyboard of anybody's.
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("XKB_DEFAULT_LAYOUT", "us");
}

void GlobalAccelKeysTest::letters()
{
    const WaylandKeyboard keyboard;
    QCOMPARE(globalAccelKeys({31, KeyFlags::command | KeyFlags::shift}, keyboard),
             QList<int>{int(Qt::META) | int(Qt::SHIFT) | Qt::Key_O});
    QCOMPARE(globalAccelKeys({0, KeyFlags::control | KeyFlags::option}, keyboard),
             QList<int>{int(Qt::CTRL) | int(Qt::ALT) | Qt::Key_A});
}

void GlobalAccelKeysTest::digitsWithShift()
{
    const WaylandKeyboard keyboard;
    QCOMPARE(globalAccelKeys({21, KeyFlags::command}, keyboard),
             QList<int>{int(Qt::META) | Qt::Key_4});
    const QList<int> either{int(Qt::META) | int(Qt::SHIFT) | Qt::Key_4,
                            int(Qt::META) | Qt::Key_Dollar};
    QCOMPARE(globalAccelKeys({21, KeyFlags::command | KeyFlags::shift}, keyboard), either);
}

void GlobalAccelKeysTest::keysWithoutCharacter()
{
    const WaylandKeyboard keyboard;
    QCOMPARE(globalAccelKeys({122, KeyFlags::command}, keyboard), QList<int>());
    QCOMPARE(globalAccelKeys({65535, 0}, keyboard), QList<int>());
}

QTEST_GUILESS_MAIN(GlobalAccelKeysTest)
#include "GlobalAccelKeysTest.moc"
