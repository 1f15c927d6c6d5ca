// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/ReleaseNotes.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ReleaseNotesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void debian();
    void others_data();
    void others();
};

void ReleaseNotesTest::debian()
{
    QCOMPARE(releaseNotes(u"== 0.3.0 ==\n"
                          " * Reads pages that lie askew, as scanned\n"
                          "   ones do.\n"
                          " * Faster.\n"
                          " -- Somebody <somebody@example.org>  Mon, 23 Nov 2026 05:16:01 +0000\n"
                          "\n"
                          "== 0.2.0 ==\n"
                          " * First.\n"
                          " -- Somebody <somebody@example.org>  Sun, 22 Nov 2026 05:16:01 +0000"_s),
             u"0.3.0\n"
             "• Reads pages that lie askew, as scanned\n"
             "   ones do.\n"
             "• Faster.\n"
             "\n"
             "0.2.0\n"
             "• First."_s);
}

void ReleaseNotesTest::others_data()
{
    QTest::addColumn<QString>("text");
    QTest::addRow("nothing") << QString();
    QTest::addRow("prose") << u"Reads <b>faster</b> -- and more.\n\nSee below"_s;
    QTest::addRow("a row of signs") << u"=====\n== ==\n=="_s;
    QTest::addRow("a star alone") << u"*"_s;
}

void ReleaseNotesTest::others()
{
    QFETCH(QString, text);
    QCOMPARE(releaseNotes(text), text);
}

QTEST_MAIN(ReleaseNotesTest)
#include "ReleaseNotesTest.moc"
