// SPDX-License-Identifier: MIT
// The log's reading of formats, and the lines on standard error.

#include "Platform/Qt/StandardErrorLog.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

class CollectingLog : public SystemLog
{
public:
    QStringList lines;

protected:
    void write(const QString &line) override { lines.append(line); }
};

/// What `action` writes to the process's standard error.
template <typename Action>
QByteArray standardErrorOf(Action action)
{
    QTemporaryFile file;
    if (!file.open()) {
        return {};
    }
    std::fflush(stderr);
    const int saved = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    action();
    std::fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
    file.seek(0);
    return file.readAll();
}

} // namespace

class SystemLogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formats_data();
    void formats();
    void oneLineOnStandardError();
    void linesOfThreadsDoNotMix();
    void everyLineIsListed();
};

void SystemLogTest::formats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("line");
    QTest::newRow("plain") << u"No text found"_s << u"No text found"_s;
    QTest::newRow("percent") << u"100%% of it"_s << u"100% of it"_s;
    QTest::newRow("directive") << u"a %s b %d c"_s << u"a  b  c"_s;
    QTest::newRow("long") << u"[%-08.3llu]"_s << u"[]"_s;
    QTest::newRow("object") << u"[%@]"_s << u"[]"_s;
    QTest::newRow("at the end") << u"50%"_s << u"50%"_s;
    QTest::newRow("no directive") << u"5% yes"_s << u"5% yes"_s;
    QTest::newRow("thrice") << u"%%%s%%"_s << u"%%"_s;
    QTest::newRow("harmless") << u"%n%n%n"_s << u""_s;
}

void SystemLogTest::formats()
{
    QFETCH(const QString, format);
    CollectingLog log;
    log.log(format);
    QCOMPARE(log.lines.size(), 1);
    QTEST(log.lines.first(), "line");
}

void SystemLogTest::oneLineOnStandardError()
{
    StandardErrorLog log;
    QCOMPARE(standardErrorOf([&] { log.log(u"Größe: 5 %%"_s); }), "vellora: Größe: 5 %\n");
    QCOMPARE(standardErrorOf([&] { log.log(u"one\nvellora: two\r\u001b[31m\u0085"_s); }),
             "vellora: one vellora: two  [31m \n");
}

void SystemLogTest::linesOfThreadsDoNotMix()
{
    constexpr int threads = 4;
    constexpr int lines = 200;
    StandardErrorLog log;
    const QByteArray written = standardErrorOf([&] {
        std::vector<std::unique_ptr<QThread>> running;
        for (int t = 0; t < threads; ++t) {
            running.emplace_back(QThread::create([&log, t] {
                for (int i = 0; i < lines; ++i) {
                    log.log(QString(200, QChar(u'a' + t)));
                }
            }));
            running.back()->start();
        }
        for (const auto &thread : running) {
            thread->wait();
        }
    });
    const QList<QByteArray> all = written.trimmed().split('\n');
    QCOMPARE(all.size(), threads * lines);
    for (const QByteArray &line : all) {
        QCOMPARE(line, "vellora: " + QByteArray(200, line.back()));
    }
}

void SystemLogTest::everyLineIsListed()
{
    QFile list(QStringLiteral(VELLORA_TREE "/Documentation/Log.md"));
    QVERIFY(list.open(QIODevice::ReadOnly));
    const QString listed = QString::fromUtf8(list.readAll());
    static const QRegularExpression line(u"(?:->|\\.)log(?:Verbatim)?\\(\\s*u\"([^\"%]+)"_s);
    int count = 0;
    QDirIterator sources(QStringLiteral(VELLORA_TREE "/Sources"), {u"*.cpp"_s}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QFile source(sources.next());
        QVERIFY(source.open(QIODevice::ReadOnly));
        auto written = line.globalMatch(QString::fromUtf8(source.readAll()));
        while (written.hasNext()) {
            const QString text = written.next().captured(1);
            QVERIFY2(listed.contains(text.trimmed()), qUtf8Printable(text));
            ++count;
        }
    }
    // As many as there were when this was written: the sources are found, and read rightly.
    QVERIFY(count >= 9);
}

QTEST_GUILESS_MAIN(SystemLogTest)
#include "SystemLogTest.moc"
