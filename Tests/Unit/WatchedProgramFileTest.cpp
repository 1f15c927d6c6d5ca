// SPDX-License-Identifier: MIT
#include "Platform/Qt/WatchedProgramFile.h"

#include "Platform/Qt/ExecRestart.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// A program's file that is replaced, and what a run hands over to the one after it.
class WatchedProgramFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isNotReplacedAtFirst();
    void tellsOfARenamedFile();
    void isNotReplacedByNothing();
    void isNotReplacedByWhatCannotRun();
    void isNotReplacedByWhatIsBesideIt();
    void saysNothingOfAnUnknownProgram();
    void successorInheritsTheClipboard_data();
    void successorInheritsTheClipboard();
    void ignoresWhatIsNoDescriptor_data();
    void ignoresWhatIsNoDescriptor();

private:
    QString program() const { return m_folder->filePath(u"program"_s); }
    void write(const QString &path) const
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void WatchedProgramFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    write(program());
    // Stands for the link to the file that runs, which the system keeps.
    QVERIFY(QFile::link(m_folder->filePath(u"kept"_s), m_folder->filePath(u"exe"_s)));
    QProcess::execute(u"ln"_s, {program(), m_folder->filePath(u"kept"_s)});
}

void WatchedProgramFileTest::isNotReplacedAtFirst()
{
    const WatchedProgramFile file(program(), m_folder->filePath(u"exe"_s));
    QVERIFY(!file.isReplaced());
}

void WatchedProgramFileTest::tellsOfARenamedFile()
{
    const WatchedProgramFile file(program(), m_folder->filePath(u"exe"_s));
    QSignalSpy changes(&file, &ProgramFile::changed);
    write(program() + u".new"_s);
    QCOMPARE(QProcess::execute(u"mv"_s, {program() + u".new"_s, program()}), 0);
    QTRY_VERIFY(!changes.isEmpty());
    QTRY_VERIFY(file.isReplaced());
    // And once more.
    changes.clear();
    write(program() + u".new"_s);
    QCOMPARE(QProcess::execute(u"mv"_s, {program() + u".new"_s, program()}), 0);
    QTRY_VERIFY(!changes.isEmpty());
    QVERIFY(file.isReplaced());
}

void WatchedProgramFileTest::isNotReplacedByNothing()
{
    const WatchedProgramFile file(program(), m_folder->filePath(u"exe"_s));
    QSignalSpy changes(&file, &ProgramFile::changed);
    QVERIFY(QFile::remove(program()));
    QTRY_VERIFY(!changes.isEmpty());
    QVERIFY(!file.isReplaced());
}

void WatchedProgramFileTest::isNotReplacedByWhatCannotRun()
{
    const WatchedProgramFile file(program(), m_folder->filePath(u"exe"_s));
    QVERIFY(QFile::remove(program()));
    QVERIFY(QDir().mkdir(program()));
    QVERIFY(!file.isReplaced());
    QVERIFY(QDir().rmdir(program()));
    write(program());
    QVERIFY(file.isReplaced());
    QFile(program()).setPermissions(QFile::ReadOwner);
    QVERIFY(!file.isReplaced());
}

void WatchedProgramFileTest::isNotReplacedByWhatIsBesideIt()
{
    const WatchedProgramFile file(program(), m_folder->filePath(u"exe"_s));
    QSignalSpy changes(&file, &ProgramFile::changed);
    write(m_folder->filePath(u"other"_s));
    QTRY_VERIFY(!changes.isEmpty());
    QVERIFY(!file.isReplaced());
}

void WatchedProgramFileTest::saysNothingOfAnUnknownProgram()
{
    for (const QString &running : {u"/nonexistent/exe"_s, u"/bin/sh"_s}) {
        const WatchedProgramFile file(program(), running);
        QSignalSpy changes(&file, &ProgramFile::changed);
        QVERIFY(QFile::remove(program()));
        write(program());
        QVERIFY(!file.isReplaced());
        QVERIFY(!changes.wait(100));
    }
}

void WatchedProgramFileTest::successorInheritsTheClipboard_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("words") << u"Grüße 漢字"_s;
    QTest::newRow("lines") << u"one\n two\t\n"_s;
    QTest::newRow("much") << QString(1'000'000, u'x');
    QTest::newRow("none") << QString();
}

void WatchedProgramFileTest::successorInheritsTheClipboard()
{
    QFETCH(const QString, text);
    QProcess run;
    run.start(QCoreApplication::applicationFilePath(), {u"hand-over"_s});
    run.write(text.toUtf8());
    run.closeWriteChannel();
    QVERIFY(run.waitForFinished(testPatience));
    const QByteArray expected = text.isEmpty() ? "nothing" : "text " + text.toUtf8();
    QCOMPARE(run.readAllStandardOutput(), expected);
}

void WatchedProgramFileTest::ignoresWhatIsNoDescriptor_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value : {"", "-1", "0", "1", "2", "9999", "99999999999", "seven"}) {
        QTest::newRow(value) << QByteArray(value);
    }
}

void WatchedProgramFileTest::ignoresWhatIsNoDescriptor()
{
    QFETCH(const QByteArray, value);
    qputenv("VELLORA_SUCCESSOR", value);
    ExecRestart restart(u"/bin/true"_s);
    QVERIFY(restart.isSuccessor());
    QCOMPARE(restart.takeClipboardText(), std::nullopt);
    QVERIFY(!qEnvironmentVariableIsSet("VELLORA_SUCCESSOR"));
}

namespace {
/// A run that hands over what it reads, and its successor, which says what it got.
int handOver(char *arguments[])
{
    ExecRestart restart(QCoreApplication::applicationFilePath());
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly)) {
        return 1;
    }
    if (restart.isSuccessor()) {
        const auto text = restart.takeClipboardText();
        out.write(text ? "text " + text->toUtf8() : "nothing");
        return restart.takeClipboardText() ? 1 : 0;
    }
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly)) {
        return 1;
    }
    const QString text = QString::fromUtf8(in.readAll());
    restart.restart(text.isEmpty() ? std::nullopt : std::optional(text));
    restart.startSuccessor(arguments);
    return 1;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().value(1) == u"hand-over") {
        return handOver(argv);
    }
    WatchedProgramFileTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WatchedProgramFileTest.moc"
