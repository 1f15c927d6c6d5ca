// SPDX-License-Identifier: MIT
#include "HotkeyString.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr quint64 command = KeyFlags::command;
constexpr quint64 shift = KeyFlags::shift;
constexpr quint64 control = KeyFlags::control;
constexpr quint64 option = KeyFlags::option;
} // namespace

class HotkeyStringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsesShortcuts_data();
    void parsesShortcuts();
    void writesShortcuts_data();
    void writesShortcuts();
    void writesNothing_data();
    void writesNothing();
    void displaysShortcuts_data();
    void displaysShortcuts();
    void saysShortcuts();
    void namesThirtySixKeys();
    void namesEachKeyBothWays_data();
    void namesEachKeyBothWays();
    void readsBackWhatItWrites();
    void takesAnyText();
};

void HotkeyStringTest::parsesShortcuts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<quint64>("flags");
    QTest::newRow("default") << u"cmd+shift+o"_s << 31 << quint64(0x120000);
    QTest::newRow("upper case") << u"CMD+Shift+O"_s << 31 << quint64(0x120000);
    QTest::newRow("long words") << u"command+option+z"_s << 6 << (command | option);
    QTest::newRow("control") << u"control+k"_s << 40 << control;
    QTest::newRow("last key wins") << u"shift+a+b"_s << 11 << shift;
    QTest::newRow("unknown key") << u"cmd+space"_s << 31 << command;
    QTest::newRow("function key") << u"cmd+f5"_s << 31 << command;
    QTest::newRow("unknown after a key") << u"a+space"_s << 0 << quint64(0);
    QTest::newRow("empty") << QString() << 31 << quint64(0);
    QTest::newRow("only separators") << u"+++"_s << 31 << quint64(0);
    QTest::newRow("no modifiers") << u"o"_s << 31 << quint64(0);
    QTest::newRow("no key") << u"ctrl+alt"_s << 31 << (control | option);
    QTest::newRow("doubled separator") << u"cmd++o"_s << 31 << command;
    QTest::newRow("leading separator") << u"+cmd+a"_s << 0 << command;
    QTest::newRow("trailing separator") << u"cmd+a+"_s << 0 << command;
    QTest::newRow("any order") << u"5+alt+ctrl"_s << 23 << (control | option);
    QTest::newRow("repeats") << u"cmd+cmd+command+a"_s << 0 << command;
    QTest::newRow("blanks are no names") << u"cmd+ a"_s << 31 << command;
    QTest::newRow("blanks in words") << u" cmd+a"_s << 0 << quint64(0);
    QTest::newRow("all") << u"cmd+shift+ctrl+alt+9"_s << 25 << KeyFlags::mask;
    QTest::newRow("with a null") << u"cmd+\0+a"_s << 0 << command;
}

void HotkeyStringTest::parsesShortcuts()
{
    QFETCH(const QString, text);
    const KeyCombination combination = HotkeyString::parsed(text);
    QTEST(int(combination.keyCode), "keyCode");
    QTEST(combination.flags, "flags");
}

void HotkeyStringTest::writesShortcuts_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<QString>("text");
    QTest::newRow("default") << 31 << (command | shift) << u"cmd+shift+o"_s;
    QTest::newRow("K with three") << 40 << (control | option | command) << u"cmd+ctrl+alt+k"_s;
    QTest::newRow("all") << 29 << KeyFlags::mask << u"cmd+shift+ctrl+alt+0"_s;
    QTest::newRow("shift alone") << 6 << shift << u"shift+z"_s;
    QTest::newRow("other flags do not count")
        << 0 << (option | 0x10000 | 0x200000 | 0x800000 | 0x20) << u"alt+a"_s;
}

void HotkeyStringTest::writesShortcuts()
{
    QFETCH(const int, keyCode);
    QFETCH(const quint64, flags);
    const auto text = HotkeyString::written({quint16(keyCode), flags});
    QVERIFY(text);
    QTEST(*text, "text");
}

void HotkeyStringTest::writesNothing_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<quint64>("flags");
    QTest::newRow("bare letter") << 0 << quint64(0);
    QTest::newRow("caps lock is no modifier") << 0 << quint64(0x10000);
    QTest::newRow("Shift-F5") << 96 << shift;
    QTest::newRow("Command-Space") << 49 << command;
    QTest::newRow("Command-Comma") << 43 << command;
    QTest::newRow("no such key") << 0xffff << command;
}

void HotkeyStringTest::writesNothing()
{
    QFETCH(const int, keyCode);
    QFETCH(const quint64, flags);
    QVERIFY(!HotkeyString::written({quint16(keyCode), flags}));
}

void HotkeyStringTest::displaysShortcuts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("default") << u"cmd+shift+o"_s << u"⌘⇧O"_s;
    QTest::newRow("control and option") << u"ctrl+alt+5"_s << u"⌃⌥5"_s;
    QTest::newRow("three") << u"cmd+ctrl+alt+k"_s << u"⌘⌃⌥K"_s;
    QTest::newRow("long words") << u"Command+OPTION+Control+x"_s << u"⌘⌥⌃X"_s;
    QTest::newRow("own order") << u"o+shift+cmd"_s << u"O⇧⌘"_s;
    QTest::newRow("ignored words") << u"cmd+f5"_s << u"⌘F5"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("empty pieces") << u"+cmd++o+"_s << u"⌘O"_s;
}

void HotkeyStringTest::displaysShortcuts()
{
    QFETCH(const QString, text);
    QTEST(HotkeyString::displayString(text), "shown");
}

void HotkeyStringTest::saysShortcuts()
{
    QCOMPARE(HotkeyString::spoken(u"cmd+shift+o"_s), u"Super + Shift + O"_s);
    QCOMPARE(HotkeyString::spoken(u"ctrl+alt+5"_s), u"Ctrl + Alt + 5"_s);
    QCOMPARE(HotkeyString::spoken(QString()), QString());
}

void HotkeyStringTest::namesThirtySixKeys()
{
    QCOMPARE(HotkeyString::keyMap().size(), 36);
    const QList<quint16> codes = HotkeyString::keyMap().values();
    QCOMPARE(QSet<quint16>(codes.begin(), codes.end()).size(), 36);
    int named = 0;
    for (int code = 0; code <= 0xffff; ++code) {
        named += HotkeyString::keyName(quint16(code)) ? 1 : 0;
    }
    QCOMPARE(named, 36);
}

void HotkeyStringTest::namesEachKeyBothWays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("code");
    const QList<int> letters{0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                             45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};
    const QList<int> digits{29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
    for (int index = 0; index < letters.size(); ++index) {
        const QString name(QChar(u'a' + index));
        QTest::newRow(qPrintable(name)) << name << letters.at(index);
    }
    for (int index = 0; index < digits.size(); ++index) {
        const QString name = QString::number(index);
        QTest::newRow(qPrintable(name)) << name << digits.at(index);
    }
}

void HotkeyStringTest::namesEachKeyBothWays()
{
    QFETCH(const QString, name);
    QFETCH(const int, code);
    QCOMPARE(int(HotkeyString::keyMap().value(name, 0xffff)), code);
    QCOMPARE(HotkeyString::keyName(quint16(code)), name);
}

void HotkeyStringTest::readsBackWhatItWrites()
{
    for (const quint16 code : HotkeyString::keyMap()) {
        for (quint64 bits = 1; bits < 16; ++bits) {
            const KeyCombination combination{code, bits * KeyFlags::shift};
            const auto text = HotkeyString::written(combination);
            QVERIFY(text);
            QVERIFY(HotkeyString::parsed(*text) == combination);
            QCOMPARE(HotkeyString::written(HotkeyString::parsed(*text)), *text);
        }
    }
}

void HotkeyStringTest::takesAnyText()
{
    const QStringList pieces{u"cmd"_s, u"COMMAND"_s, u"shift"_s, u"ctrl"_s, u"alt"_s, u"+"_s,
                             u"+"_s,   u"a"_s,       u"9"_s,     u" "_s,    u"ß"_s,   u"İ"_s,
                             u"\0"_s,  u"\xd800"_s,  u"👍"_s,     u"ﬁ"_s,    u"%1"_s,  u"\n"_s};
    // The same texts in every run.
    QRandomGenerator random(7);
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (int count = random.bounded(12); count > 0; --count) {
            text += random.bounded(4) == 0 ? QString(QChar(char16_t(random.bounded(0x10000))))
                                           : pieces.at(random.bounded(int(pieces.size())));
        }
        const KeyCombination combination = HotkeyString::parsed(text);
        // Whatever it was, it is a shortcut: on a key with a name, with known modifiers.
        QVERIFY(HotkeyString::keyName(combination.keyCode));
        QCOMPARE(combination.flags & ~KeyFlags::mask, quint64(0));
        const auto written = HotkeyString::written(combination);
        QCOMPARE(written.has_value(), combination.flags != 0);
        if (written) {
            QVERIFY(HotkeyString::parsed(*written) == combination);
        }
        QVERIFY(!HotkeyString::displayString(text).contains(u'+'));
    }
    QVERIFY(HotkeyString::parsed(QString(1000000, u'a')) == (KeyCombination{31, 0}));
    QVERIFY(HotkeyString::parsed(QString(1000000, u'+')) == (KeyCombination{31, 0}));
}

QTEST_GUILESS_MAIN(HotkeyStringTest)
#include "HotkeyStringTest.moc"
