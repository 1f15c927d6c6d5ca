// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// Where a program finds its resource bundle: a copy of a small program is put into made-up
/// installations and asked.
class BundleLookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void prefersTheResourceFolder();
    void takesTheOneNextToTheProgram();
    void passesOverWhatIsNoFolder();
    void findsItInTheDataFolders();
    void fallsBackToTheBuildTree();
    void endsTheProgramWhenThereIsNone();
    void theModuleLiesNextToTheProgramFirst();
    void isFoundOnceByAllThreads();

private:
    QString path(const QString &relative) { return m_folder->filePath(relative); }
    void makeBundle(const QString &parent);
    void run(const QStringList &arguments = {});

    const QString m_bundle = u"/Vellora_Vellora.bundle"_s;
    const QString m_buildPath = QStringLiteral(BUNDLE_PROBE_BUILD_PATH);
    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_output;
    QString m_errors;
    bool m_ended = false;
};

void BundleLookupTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkpath(u"bin"_s));
    QVERIFY(QDir(m_folder->path()).mkpath(u"share/vellora"_s));
    QVERIFY(QFile::copy(QStringLiteral(BUNDLE_PROBE), path(u"bin/probe"_s)));
    QDir(m_buildPath).removeRecursively();
}

void BundleLookupTest::makeBundle(const QString &parent)
{
    QVERIFY(QDir().mkpath(parent + m_bundle));
}

void BundleLookupTest::run(const QStringList &arguments)
{
    QProcess probe;
    probe.start(path(u"bin/probe"_s), arguments);
    QVERIFY(probe.waitForFinished(testPatience));
    m_output = QString::fromLocal8Bit(probe.readAllStandardOutput()).split(u'\n');
    m_errors = QString::fromLocal8Bit(probe.readAllStandardError());
    m_ended = probe.exitStatus() == QProcess::NormalExit && probe.exitCode() == 0;
}

void BundleLookupTest::prefersTheResourceFolder()
{
    makeBundle(path(u"share/vellora"_s));
    makeBundle(path(u"bin"_s));
    run();
    QCOMPARE(m_output.value(0), path(u"share/vellora"_s) + m_bundle);
    QCOMPARE(m_output.value(1), u"same"_s);
    QVERIFY(m_ended);
}

void BundleLookupTest::takesTheOneNextToTheProgram()
{
    makeBundle(path(u"bin"_s));
    QVERIFY(QDir(path(u"share"_s)).removeRecursively());
    run();
    QCOMPARE(m_output.value(0), path(u"bin"_s) + m_bundle);
}

void BundleLookupTest::passesOverWhatIsNoFolder()
{
    QFile file(path(u"share/vellora"_s) + m_bundle);
    QVERIFY(file.open(QIODevice::WriteOnly));
    makeBundle(path(u"bin"_s));
    run();
    QCOMPARE(m_output.value(0), path(u"bin"_s) + m_bundle);
}

void BundleLookupTest::findsItInTheDataFolders()
{
    QVERIFY(QDir(path(u"share"_s)).removeRecursively());
    makeBundle(path(u"data/vellora"_s));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"data"_s)));
    run();
    qunsetenv("XDG_DATA_HOME");
    QCOMPARE(m_output.value(0), path(u"data/vellora"_s) + m_bundle);
    QVERIFY(m_ended);
}

void BundleLookupTest::fallsBackToTheBuildTree()
{
    QVERIFY(QDir().mkpath(m_buildPath));
    run();
    QCOMPARE(m_output.value(0), m_buildPath);
}

void BundleLookupTest::endsTheProgramWhenThereIsNone()
{
    run();
    QVERIFY(!m_ended);
    QVERIFY2(m_errors.contains(u"could not load resource bundle: from %1 or %2"_s.arg(
                 path(u"bin"_s) + m_bundle, m_buildPath)),
             qPrintable(m_errors));
}

void BundleLookupTest::theModuleLiesNextToTheProgramFirst()
{
    makeBundle(path(u"bin"_s));
    // Not in the resource folder, where the program looks before.
    makeBundle(path(u"share/vellora"_s));
    QVERIFY(QDir().mkpath(m_buildPath));
    run({u"module"_s});
    QCOMPARE(m_output.value(0), path(u"bin"_s) + m_bundle);
    QVERIFY(m_ended);
    QVERIFY(QDir(path(u"bin"_s) + m_bundle).removeRecursively());
    run({u"module"_s});
    QCOMPARE(m_output.value(0), m_buildPath);
}

void BundleLookupTest::isFoundOnceByAllThreads()
{
    makeBundle(path(u"share/vellora"_s));
    run({u"threads"_s});
    QCOMPARE(m_output.value(0), path(u"share/vellora"_s) + m_bundle);
    QCOMPARE(m_output.value(1), u"same"_s);
    QVERIFY(m_ended);
}

QTEST_GUILESS_MAIN(BundleLookupTest)
#include "BundleLookupTest.moc"
