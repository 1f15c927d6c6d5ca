// SPDX-License-Identifier: MIT
// The clipboard of a Wayland desktop, read and taken over by other programs.

#include "Platform/Wayland/DataControlPasteboard.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QString plainText = u"text/plain;charset=utf-8"_s;

/// What wl-paste reads; absent when there is no text. The event loop runs meanwhile, because it
/// is we who serve the text.
std::optional<QByteArray> pasted()
{
    QProcess reader;
    reader.start(u"wl-paste"_s, {u"--no-newline"_s, u"--type"_s, plainText});
    const bool hasEnded =
        QTest::qWaitFor([&] { return reader.state() == QProcess::NotRunning; }, testPatience);
    return hasEnded && reader.exitCode() == 0 ? std::optional(reader.readAllStandardOutput())
                                              : std::nullopt;
}

/// Another program copies this text; it stays behind to serve it.
void copyElsewhere(const QByteArray &text)
{
    QProcess writer;
    writer.setStandardOutputFile(QProcess::nullDevice());
    writer.setStandardErrorFile(QProcess::nullDevice());
    writer.start(u"wl-copy"_s, {u"--type"_s, plainText});
    writer.write(text);
    writer.closeWriteChannel();
    QVERIFY(QTest::qWaitFor([&] { return writer.state() == QProcess::NotRunning; }, testPatience));
}
} // namespace

class DataControlPasteboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void otherProgramsReadTheText_data();
    void otherProgramsReadTheText();
    void theLastTextCounts();
    void clearing();
    void aNewTextIsOneChange();
    void anotherProgramTakesOver();
    void readersThatGoAway();
    void endsWithTheProgram();
};

void DataControlPasteboardTest::otherProgramsReadTheText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << u"one line"_s;
    QTest::newRow("lines") << u"one\ntwo\n\nfour\n"_s;
    QTest::newRow("letters") << u"Größe 漢字 سلام 🙂"_s;
    // Far more than a pipe holds.
    QTest::newRow("large") << QString(qsizetype(8) * 1024 * 1024, u'ä');
}

void DataControlPasteboardTest::otherProgramsReadTheText()
{
    QFETCH(const QString, text);
    DataControlPasteboard pasteboard;
    QVERIFY(pasteboard.isUsable());
    pasteboard.clearContents();
    pasteboard.setString(text);
    // Again and again.
    QVERIFY(pasted() == text.toUtf8());
    QVERIFY(pasted() == text.toUtf8());
}

void DataControlPasteboardTest::theLastTextCounts()
{
    DataControlPasteboard pasteboard;
    pasteboard.setString(u"first"_s);
    pasteboard.setString(u"second"_s);
    QVERIFY(pasted() == "second");
}

void DataControlPasteboardTest::clearing()
{
    DataControlPasteboard pasteboard;
    pasteboard.setString(u"text"_s);
    QVERIFY(pasted() == "text");
    pasteboard.clearContents();
    QTRY_VERIFY(!pasted());
}

void DataControlPasteboardTest::aNewTextIsOneChange()
{
    DataControlPasteboard pasteboard;
    pasteboard.setString(u"text 0"_s);
    // Another program that is told of every change; its trace shows them, the empty ones too.
    QProcess watcher;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
    watcher.setProcessEnvironment(environment);
    watcher.start(u"wl-paste"_s, {u"--watch"_s, u"true"_s});
    QByteArray trace;
    const auto changes = [&] {
        trace += watcher.readAllStandardError();
        return trace.count(".selection(");
    };
    QTRY_COMPARE(changes(), 1);
    for (int i = 1; i <= 10; ++i) {
        pasteboard.clearContents();
        pasteboard.setString(u"text %1"_s.arg(i));
        QTRY_COMPARE(changes(), 1 + i);
    }
    QVERIFY(pasted() == "text 10");
    QVERIFY(!trace.contains(".selection(nil)"));
    watcher.kill();
    QVERIFY(QTest::qWaitFor([&] { return watcher.state() == QProcess::NotRunning; }, testPatience));
}

void DataControlPasteboardTest::anotherProgramTakesOver()
{
    DataControlPasteboard pasteboard;
    pasteboard.setString(u"ours"_s);
    QVERIFY(pasted() == "ours");
    copyElsewhere("theirs");
    QTRY_VERIFY(pasted() == "theirs");
    // And it can be taken back, when the user copies here again.
    pasteboard.setString(u"ours again"_s);
    QVERIFY(pasted() == "ours again");
}

void DataControlPasteboardTest::readersThatGoAway()
{
    DataControlPasteboard pasteboard;
    const QString large(qsizetype(8) * 1024 * 1024, u'x');
    pasteboard.setString(large);
    for (int i = 0; i < 5; ++i) {
        QProcess reader;
        reader.start(u"wl-paste"_s, {});
        // It has begun, and will not read on.
        QVERIFY(QTest::qWaitFor([&] { return reader.bytesAvailable() > 0; }, testPatience));
        reader.kill();
        QVERIFY(
            QTest::qWaitFor([&] { return reader.state() == QProcess::NotRunning; }, testPatience));
    }
    QVERIFY(pasted() == large.toUtf8());
}

void DataControlPasteboardTest::endsWithTheProgram()
{
    {
        DataControlPasteboard pasteboard;
        pasteboard.setString(u"text"_s);
        QVERIFY(pasted() == "text");
    }
    QTRY_VERIFY(!pasted());
}

QTEST_GUILESS_MAIN(DataControlPasteboardTest)
#include "DataControlPasteboardTest.moc"
