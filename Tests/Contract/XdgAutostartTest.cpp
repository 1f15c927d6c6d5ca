// SPDX-License-Identifier: MIT
// The login item's file: as desktop-file-validate wants it, and started by a real launcher.

#include "Platform/Freedesktop/XdgAutostart.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class XdgAutostartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void standsAmongTheAutostartedPrograms();
    void isValid();
    void launcherStartsThatVeryProgram_data();
    void launcherStartsThatVeryProgram();
    void tellsWhatTheEntryStartedFromTheRest();
    void diesWithTheProgram();
    void registeringAgainRestoresTheEntry();
    void unregisteringRemovesOnlyOurs();
    void unregisteringNothingIsFine();
    void danglingLinkIsRemoved();
    void failuresAreSentences();
    void unknownProgramIsNotRegistered();

private:
    XdgAutostart item(const QString &program) const
    {
        return XdgAutostart({u"org.example.Test"_s, u"Test; of=names\\"_s,
                             u" Begins with a blank\nand has two lines"_s, u"org.example.Test"_s,
                             program});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void XdgAutostartTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder->filePath(u"config"_s)));
}

void XdgAutostartTest::standsAmongTheAutostartedPrograms()
{
    XdgAutostart entry = item(u"/usr/bin/true"_s);
    QCOMPARE(entry.filePath(), m_folder->filePath(u"config/autostart/org.example.Test.desktop"_s));
    QCOMPARE(entry.registerItem(), std::nullopt);
    QVERIFY(QFile::exists(entry.filePath()));
    QCOMPARE(QDir(m_folder->filePath(u"config/autostart"_s)).entryList(QDir::Files).size(), 1);
}

void XdgAutostartTest::isValid()
{
    XdgAutostart entry = item(u"/opt/with \"quotes\" $x `y` \\z 100%/run"_s);
    QCOMPARE(entry.registerItem(), std::nullopt);
    QProcess validator;
    validator.start(u"desktop-file-validate"_s, {entry.filePath()});
    QVERIFY(validator.waitForFinished(testPatience));
    QCOMPARE(validator.readAll(), QByteArray());
    QCOMPARE(validator.exitCode(), 0);
}

void XdgAutostartTest::launcherStartsThatVeryProgram_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("plain") << u"plain"_s;
    QTest::newRow("blanks") << u"two  blanks "_s;
    QTest::newRow("quotes") << u"it's \"quoted\""_s;
    QTest::newRow("shell") << u"$HOME `id` $(id) ; & | > * ? # ~ !"_s;
    QTest::newRow("backslashes") << u"a\\b\\\\c\\n\\s"_s;
    QTest::newRow("field codes") << u"%f 100%% %"_s;
    QTest::newRow("letters") << u"Größe 漢字 🙂"_s;
    QTest::newRow("tab and line") << u"tab\tline\nend"_s;
}

void XdgAutostartTest::launcherStartsThatVeryProgram()
{
    QFETCH(const QString, folder);
    const QString program = m_folder->filePath(folder + u"/run"_s);
    QVERIFY(QDir().mkpath(m_folder->filePath(folder)));
    QFile script(program);
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n: > \"$MARKER\"\n");
    script.close();
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

    XdgAutostart entry = item(program);
    QCOMPARE(entry.registerItem(), std::nullopt);
    const QString marker = m_folder->filePath(u"marker"_s);
    QProcess launcher;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"MARKER"_s, marker);
    launcher.setProcessEnvironment(environment);
    launcher.start(u"gio"_s, {u"launch"_s, entry.filePath()});
    QVERIFY(launcher.waitForFinished(testPatience));
    QCOMPARE(launcher.readAllStandardError(), QByteArray());
    QTRY_VERIFY(QFile::exists(marker));
}

void XdgAutostartTest::tellsWhatTheEntryStartedFromTheRest()
{
    QVERIFY(!item(u"/usr/bin/true"_s).launchedProgram());
    // This test once more, as the entry starts it.
    XdgAutostart entry = item(QCoreApplication::applicationFilePath());
    QCOMPARE(entry.registerItem(), std::nullopt);
    const QString marker = m_folder->filePath(u"marker"_s);
    qputenv("MARKER", QFile::encodeName(marker));
    QProcess launcher;
    launcher.start(u"gio"_s, {u"launch"_s, entry.filePath()});
    QVERIFY(launcher.waitForFinished(testPatience));
    QFile answer(marker);
    QTRY_VERIFY(answer.exists() && answer.size() > 0);
    QVERIFY(answer.open(QIODevice::ReadOnly));
    QCOMPARE(answer.readAll(), "launched");
    qunsetenv("MARKER");
}

void XdgAutostartTest::diesWithTheProgram()
{
    const QString program = m_folder->filePath(u"run it"_s);
    QVERIFY(QFile::copy(u"/usr/bin/true"_s, program));
    XdgAutostart entry = item(program);
    QCOMPARE(entry.registerItem(), std::nullopt);
    const auto launch = [&] {
        QProcess launcher;
        launcher.start(u"gio"_s, {u"launch"_s, entry.filePath()});
        return launcher.waitForFinished(testPatience) && launcher.exitCode() == 0;
    };
    QVERIFY(launch());
    QVERIFY(QFile::remove(program));
    QVERIFY(!launch());
}

void XdgAutostartTest::registeringAgainRestoresTheEntry()
{
    XdgAutostart entry = item(u"/usr/bin/true"_s);
    QCOMPARE(entry.registerItem(), std::nullopt);
    QFile file(entry.filePath());
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray content = file.readAll();
    file.write("Hidden=true\n");
    file.close();
    QCOMPARE(entry.registerItem(), std::nullopt);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

void XdgAutostartTest::unregisteringRemovesOnlyOurs()
{
    XdgAutostart entry = item(u"/usr/bin/true"_s);
    QCOMPARE(entry.registerItem(), std::nullopt);
    QFile other(m_folder->filePath(u"config/autostart/other.desktop"_s));
    QVERIFY(other.open(QIODevice::WriteOnly));
    QCOMPARE(entry.unregisterItem(), std::nullopt);
    QVERIFY(!QFile::exists(entry.filePath()));
    QVERIFY(other.exists());
}

void XdgAutostartTest::unregisteringNothingIsFine()
{
    QCOMPARE(item(u"/usr/bin/true"_s).unregisterItem(), std::nullopt);
    QVERIFY2(!QFile::exists(m_folder->filePath(u"config"_s)), "makes no folder");
}

void XdgAutostartTest::danglingLinkIsRemoved()
{
    XdgAutostart entry = item(u"/usr/bin/true"_s);
    QVERIFY(QDir().mkpath(m_folder->filePath(u"config/autostart"_s)));
    QVERIFY(QFile::link(m_folder->filePath(u"nowhere"_s), entry.filePath()));
    QCOMPARE(entry.unregisterItem(), std::nullopt);
    QVERIFY(!QFileInfo(entry.filePath()).isSymLink());
}

void XdgAutostartTest::failuresAreSentences()
{
    // For the superuser too: a file where the folder belongs, a folder where the file belongs.
    XdgAutostart entry = item(u"/usr/bin/true"_s);
    QFile blocker(m_folder->filePath(u"config"_s));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    const auto noFolder = entry.registerItem();
    QVERIFY(noFolder);
    QVERIFY(noFolder->contains(m_folder->filePath(u"config/autostart"_s)));
    QVERIFY(noFolder->endsWith(u'.'));
    QVERIFY(blocker.remove());

    QVERIFY(QDir().mkpath(entry.filePath() + u"/inside"_s));
    const auto noFile = entry.registerItem();
    QVERIFY(noFile);
    QVERIFY(noFile->contains(entry.filePath()));
    const auto notRemoved = entry.unregisterItem();
    QVERIFY(notRemoved);
    QVERIFY(notRemoved->contains(entry.filePath()));
}

void XdgAutostartTest::unknownProgramIsNotRegistered()
{
    XdgAutostart entry = item(u"relative"_s);
    QVERIFY(entry.registerItem());
    QVERIFY(!QFile::exists(entry.filePath()));
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsSet("MARKER")) {
        QFile answer(qEnvironmentVariable("MARKER"));
        const XdgAutostart item({});
        return answer.open(QIODevice::WriteOnly) &&
                       answer.write(item.launchedProgram() ? "launched" : "not launched") > 0
                   ? 0
                   : 1;
    }
    XdgAutostartTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "XdgAutostartTest.moc"
