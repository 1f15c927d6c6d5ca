// SPDX-License-Identifier: MIT
// The id that the portal reads out of a systemd unit's name.

#include "Platform/Portal/PortalApplication.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PortalApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idOfUnit_data();
    void idOfUnit();
};

void PortalApplicationTest::idOfUnit_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("id");
    QTest::newRow("scope of a launcher")
        << u"app-gnome-org.example.Editor-1234.scope"_s << u"org.example.Editor"_s;
    QTest::newRow("scope") << u"app-org.example.Editor-1234.scope"_s << u"org.example.Editor"_s;
    QTest::newRow("dash") << u"app-gnome-org.example.my\\x2deditor-1234.scope"_s
                          << u"org.example.my-editor"_s;
    QTest::newRow("service") << u"app-gnome-org.example.Editor@autostart.service"_s
                             << u"org.example.Editor"_s;
    QTest::newRow("plain service")
        << u"app-org.example.Editor.service"_s << u"org.example.Editor"_s;
    QTest::newRow("terminal") << u"vte-spawn-0815.scope"_s << QString();
    QTest::newRow("session") << u"session-2.scope"_s << QString();
    QTest::newRow("nothing") << QString() << QString();
}

void PortalApplicationTest::idOfUnit()
{
    QFETCH(const QString, unit);
    QFETCH(const QString, id);
    QCOMPARE(portalApplicationId(unit), id);
}

QTEST_GUILESS_MAIN(PortalApplicationTest)
#include "PortalApplicationTest.moc"
