// SPDX-License-Identifier: MIT
// The updater of a copy that no package manager knows: one honest window.

#include "Platform/Freedesktop/UninstalledUpdater.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class UninstalledUpdaterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doesNotStart();
    void saysSoInOneWindow();
    void windowGoesWithTheUpdater();
};

void UninstalledUpdaterTest::doesNotStart()
{
    UninstalledUpdater updater(u"Vellora"_s);
    QVERIFY(!updater.startUpdater());
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void UninstalledUpdaterTest::saysSoInOneWindow()
{
    UninstalledUpdater updater(u"Vellora"_s);
    updater.checkForUpdates();
    updater.checkForUpdates();
    QCOMPARE(QApplication::topLevelWidgets().size(), 1);
    const auto *window = qobject_cast<QMessageBox *>(QApplication::topLevelWidgets().constFirst());
    QVERIFY(window);
    QVERIFY(window->isVisible());
    QVERIFY(!window->isModal());
    QCOMPARE(window->windowTitle(), u"Vellora Update"_s);
    QVERIFY(window->text().contains(u"cannot look for updates"_s));
    QVERIFY(window->informativeText().contains(u"not installed from a package source"_s));

    window->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty());
    updater.checkForUpdates();
    QCOMPARE(QApplication::topLevelWidgets().size(), 1);
}

void UninstalledUpdaterTest::windowGoesWithTheUpdater()
{
    {
        UninstalledUpdater updater(u"Vellora"_s);
        updater.checkForUpdates();
    }
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

QTEST_MAIN(UninstalledUpdaterTest)
#include "UninstalledUpdaterTest.moc"
