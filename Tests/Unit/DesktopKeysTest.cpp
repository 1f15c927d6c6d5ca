// SPDX-License-Identifier: MIT
// GNOME's accelerators beside our combinations.

#include "Platform/GNOME/DesktopKeys.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DesktopKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accelerators_data();
    void accelerators();
};

void DesktopKeysTest::accelerators_data()
{
    QTest::addColumn<QString>("accelerator");
    QTest::addColumn<bool>("isOurs");
    QTest::newRow("as we write it") << u"<Shift><Super>o"_s << true;
    QTest::newRow("in another order, in capitals") << u"<Super><Shift>O"_s << true;
    QTest::newRow("another layout's letter") << u"<Shift><Super>Cyrillic_shcha"_s << true;
    QTest::newRow("by other names") << u"<shift><Mod4>o"_s << true;
    QTest::newRow("a modifier less") << u"<Super>o"_s << false;
    QTest::newRow("a modifier more") << u"<Shift><Super><Alt>o"_s << false;
    QTest::newRow("another key") << u"<Shift><Super>p"_s << false;
    QTest::newRow("a key that ours begins") << u"<Shift><Super>omega"_s << false;
    QTest::newRow("a modifier that we have not") << u"<Shift><Super><Hyper>o"_s << false;
    QTest::newRow("no key") << u"<Shift><Super>"_s << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("unclosed") << u"<Shift><Super"_s << false;
    QTest::newRow("switched off") << u"disabled"_s << false;
}

void DesktopKeysTest::accelerators()
{
    QFETCH(QString, accelerator);
    QFETCH(bool, isOurs);
    QCOMPARE(isAccelerator(accelerator, KeyFlags::shift | KeyFlags::command,
                           {u"o"_s, u"Cyrillic_shcha"_s}),
             isOurs);
}

QTEST_APPLESS_MAIN(DesktopKeysTest)
#include "DesktopKeysTest.moc"
