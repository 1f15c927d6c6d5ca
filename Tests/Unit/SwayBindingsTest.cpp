// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayBindings.h"

#include "Platform/KeyTap.h"
#include "Platform/Sway/SwayBindingRecord.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
/// The place of the ANSI keyboard's O.
const SwayKey shiftSuperO{KeyFlags::shift | KeyFlags::command, 32, {u"o"_s, u"cyrillic_shcha"_s}};
} // namespace

class SwayBindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text();
    void bindings_data();
    void bindings();
    void record();
    void damagedRecords_data();
    void damagedRecords();
};

void SwayBindingsTest::text()
{
    QCOMPARE(swayKeyText(shiftSuperO), u"Shift+Mod4+32"_s);
    QCOMPARE(swayKeyText({KeyFlags::control | KeyFlags::option, 45, {}}), u"Ctrl+Mod1+45"_s);
    QCOMPARE(swayKeyText(shiftSuperO, {u"Lock"_s, u"Mod2"_s}), u"Lock+Mod2+Shift+Mod4+32"_s);
    QCOMPARE(swayKeyText({0, 45, {}}), u"45"_s);
}

void SwayBindingsTest::bindings_data()
{
    QTest::addColumn<QString>("config");
    QTest::addColumn<bool>("taken");
    const auto row = [](const char *name, const QString &config, bool taken) {
        QTest::newRow(name) << config << taken;
    };
    row("nothing", QString(), false);
    row("the same", u"bindsym Mod4+Shift+o exec foot"_s, true);
    row("in another order and case", u"bindsym shift+mod4+O exec foot"_s, true);
    row("Super by name", u"bindsym Super+Shift+o exec foot"_s, true);
    row("by a letter of another layout", u"bindsym Mod4+Shift+Cyrillic_shcha kill"_s, true);
    row("by number", u"bindcode Mod4+Shift+32 kill"_s, true);
    row("another key", u"bindsym Mod4+Shift+p exec foot"_s, false);
    row("another number", u"bindcode Mod4+Shift+33 kill"_s, false);
    row("fewer modifiers", u"bindsym Mod4+o exec foot"_s, false);
    row("more modifiers", u"bindsym Mod4+Shift+Ctrl+o exec foot"_s, false);
    row("a comment", u"# bindsym Mod4+Shift+o exec foot"_s, false);
    row("options", u"bindsym --no-repeat --locked Mod4+Shift+o kill"_s, true);
    row("the release", u"bindsym --release Mod4+Shift+o kill"_s, false);
    row("variable", u"set $mod Mod4\nbindsym $mod+Shift+o kill"_s, true);
    row("variable of a variable", u"set $a Mod4\nset $b $a+Shift\nbindsym $b+o kill"_s, true);
    row("variables with the same beginning",
        u"set $mod Mod1\nset $mod2 Mod4\nbindsym $mod2+Shift+o kill"_s, true);
    row("indented", u"  \tbindsym Mod4+Shift+o kill"_s, true);
    row("continued line", u"bindsym \\\nMod4+Shift+o kill"_s, true);
    row("block", u"bindsym {\n    Mod4+Shift+o kill\n}"_s, true);
    row("block with options", u"bindsym --locked {\n    Mod4+Shift+o kill\n}"_s, true);
    row("another mode", u"mode \"resize\" {\n    bindsym Mod4+Shift+o kill\n}"_s, false);
    row("block of another mode", u"mode x {\nbindsym {\nMod4+Shift+o kill\n}\n}"_s, false);
    row("after a block", u"input * {\n    xkb_layout de\n}\nbindsym Mod4+Shift+o kill"_s, true);
    row("no combination", u"bindsym"_s, false);
    row("braces that do not match", u"}\n}\nbindsym Mod4+Shift+o kill"_s, true);
}

void SwayBindingsTest::bindings()
{
    QFETCH(const QString, config);
    QFETCH(const bool, taken);
    QCOMPARE(swayConfigBinds(config, shiftSuperO), taken);
}

void SwayBindingsTest::record()
{
    const QByteArray socket = "/run/user/1000/sway-ipc.1000.1234.sock";
    const QByteArray text = SwayBindingRecord::text(shiftSuperO, socket);
    QCOMPARE(SwayBindingRecord::parsed(text, socket), std::optional(shiftSuperO));
    // The sway of another session has none of it.
    QCOMPARE(SwayBindingRecord::parsed(text, "/run/user/1000/sway-ipc.1000.5678.sock"),
             std::nullopt);
    QCOMPARE(SwayBindingRecord::parsed(text, QByteArray()), std::nullopt);
}

void SwayBindingsTest::damagedRecords_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("\0\xff{", 3);
    QTest::newRow("a list") << QByteArray("[1]");
    QTest::newRow("no key") << QByteArray(R"({"socket":"s","flags":0})");
    QTest::newRow("a command") << QByteArray(R"({"socket":"s","keycode":"32; exec true"})");
    QTest::newRow("no such key") << QByteArray(R"({"socket":"s","keycode":256})");
    QTest::newRow("below") << QByteArray(R"({"socket":"s","keycode":-1})");
    QTest::newRow("a fraction") << QByteArray(R"({"socket":"s","keycode":1e300})");
}

void SwayBindingsTest::damagedRecords()
{
    QFETCH(const QByteArray, text);
    QCOMPARE(SwayBindingRecord::parsed(text, "s"), std::nullopt);
}

QTEST_GUILESS_MAIN(SwayBindingsTest)
#include "SwayBindingsTest.moc"
