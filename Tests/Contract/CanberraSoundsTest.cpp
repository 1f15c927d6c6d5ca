// SPDX-License-Identifier: MIT
// Sounds through a real sound server, recorded from its output; and without one. The main thread
// is never held up.

#include "Platform/Freedesktop/CanberraSounds.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// What a call may take of the main thread.
constexpr double longestCall = 5; // milliseconds

const QString shutter = u"/usr/share/sounds/freedesktop/stereo/camera-shutter.oga"_s;

CanberraSounds makeSounds()
{
    return {{"org.example.Test", "Test", "test"}, [] {
                return QString();
            }};
}

/// The time that `call` takes, in milliseconds: the least of several, for a busy machine may take
/// the processor away in any of them, and what waits for somebody does so each time.
template <typename Call>
double duration(Call call)
{
    std::vector<double> times;
    for (int i = 0; i < 15; ++i) {
        QElapsedTimer clock;
        clock.start();
        call();
        times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    return *std::min_element(times.begin(), times.end());
}

class Process : public QProcess
{
public:
    explicit Process(const QString &program, const QStringList &arguments = {})
    {
        setStandardErrorFile(nullDevice());
        start(program, arguments);
    }
    ~Process() override
    {
        terminate();
        waitForFinished(testPatience);
    }
};

bool succeeds(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    return process.waitForFinished(testPatience) && process.exitCode() == 0;
}

/// A sound server whose output goes nowhere but to those who record it.
class SoundServer
{
public:
    /// Whether it runs and has its output.
    bool start()
    {
        m_processes.push_back(std::make_unique<Process>(u"pipewire"_s));
        // The session manager ends at once where it finds no server, and nobody else makes an
        // output the default.
        if (!eventually(u"pw-cli"_s, {u"info"_s, u"0"_s})) {
            return false;
        }
        m_processes.push_back(std::make_unique<Process>(u"wireplumber"_s));
        m_processes.push_back(std::make_unique<Process>(u"pipewire-pulse"_s));
        return eventually(u"pactl"_s,
                          {u"load-module"_s, u"module-null-sink"_s, u"sink_name=test"_s}) &&
               eventually(u"pactl"_s, {u"set-default-sink"_s, u"test"_s});
    }

private:
    static bool eventually(const QString &program, const QStringList &arguments)
    {
        return QTest::qWaitFor([&] { return succeeds(program, arguments); }, testPatience);
    }

    std::vector<std::unique_ptr<Process>> m_processes;
};

/// Records what the server puts out.
class Recorder
{
public:
    Recorder()
        : m_process(u"parec"_s, {u"-d"_s, u"test.monitor"_s, u"--format=s16le"_s, u"--rate=44100"_s,
                                 u"--channels=1"_s, u"--latency-msec=20"_s})
    {
    }
    /// The loudest sample since the beginning, of 32767.
    int peak()
    {
        m_bytes += m_process.readAll();
        int loudest = 0;
        for (qsizetype i = 0; i + 1 < m_bytes.size(); i += 2) {
            qint16 sample = 0;
            memcpy(&sample, m_bytes.constData() + i, sizeof sample);
            loudest = std::max(loudest, std::abs(int(sample)));
        }
        return loudest;
    }
    bool isRecording() { return !(m_bytes += m_process.readAll()).isEmpty(); }
    /// Whether it hears something of `play`, called again and again: a server that has just started
    /// may not have connected what plays with what records.
    bool hears(const std::function<void()> &play)
    {
        constexpr int longestSound = 2000; // milliseconds
        return QTest::qWaitFor(
            [&] {
                play();
                return QTest::qWaitFor([this] { return peak() > 3000; }, longestSound);
            },
            testPatience);
    }

private:
    Process m_process;
    QByteArray m_bytes;
};

} // namespace

class CanberraSoundsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void soundsAreFound();
    void whatIsNoSoundIsNotPlayed_data();
    void whatIsNoSoundIsNotPlayed();
    void nothingPlaysWithoutAServer();
    void soundIsHeard_data();
    void soundIsHeard();
    void serverThatStartsLaterIsFound();
    void restartedServerIsFound();

private:
    bool canServe();

    /// Where the servers of a test meet.
    std::unique_ptr<QTemporaryDir> m_runtime;
};

void CanberraSoundsTest::init()
{
    m_runtime = std::make_unique<QTemporaryDir>();
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime->path()));
}

bool CanberraSoundsTest::canServe()
{
    const QStringList programs{u"pipewire"_s,       u"pw-cli"_s, u"wireplumber"_s,
                               u"pipewire-pulse"_s, u"pactl"_s,  u"parec"_s};
    return std::all_of(programs.cbegin(), programs.cend(), [](const QString &program) {
        return !QStandardPaths::findExecutable(program).isEmpty();
    });
}

#define NEED_SERVER()                                                                              \
    if (!canServe()) {                                                                             \
        if (qEnvironmentVariable("CI") == u"true") {                                               \
            QFAIL("no sound server is installed");                                                 \
        }                                                                                          \
        QSKIP("no sound server is installed");                                                     \
    }

void CanberraSoundsTest::soundsAreFound()
{
    const CanberraSounds sounds = makeSounds();
    QCOMPARE(sounds.file(u"camera-shutter"_s), shutter);
    QVERIFY(!sounds.file(u"screen-capture"_s).isEmpty());
    QVERIFY(sounds.file(u"no-such-sound"_s).isEmpty());
    const double took = duration([&] { std::ignore = sounds.file(u"camera-shutter"_s); });
    QVERIFY2(took < longestCall, qPrintable(QString::number(took)));
}

void CanberraSoundsTest::whatIsNoSoundIsNotPlayed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no sound at all");
    QTest::newRow("other Ogg") << QByteArray("OggS") + QByteArray(24, '\0') + "OpusHead";
    QTest::newRow("other RIFF") << QByteArray("RIFF\0\0\0\0AVI ", 12);
}

void CanberraSoundsTest::whatIsNoSoundIsNotPlayed()
{
    QFETCH(const QByteArray, content);
    QFile file(m_runtime->filePath(u"sound"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    CanberraSounds sounds = makeSounds();
    QVERIFY(!sounds.play(file.fileName()));
    QVERIFY(!sounds.play(m_runtime->filePath(u"absent"_s)));
    QVERIFY(!sounds.play(m_runtime->path()));
}

void CanberraSoundsTest::nothingPlaysWithoutAServer()
{
    CanberraSounds sounds = makeSounds();
    // At first it is not known yet.
    QTRY_VERIFY(!sounds.play(shutter));
    bool plays = false;
    const double took = duration([&] { plays = sounds.play(shutter) || plays; });
    QVERIFY(!plays);
    QVERIFY2(took < longestCall, qPrintable(QString::number(took)));
    const double bellTook = duration([&] { sounds.beep(); });
    QVERIFY2(bellTook < longestCall, qPrintable(QString::number(bellTook)));
}

void CanberraSoundsTest::soundIsHeard_data()
{
    QTest::addColumn<bool>("bell");
    QTest::newRow("shutter") << false;
    QTest::newRow("bell") << true;
}

void CanberraSoundsTest::soundIsHeard()
{
    NEED_SERVER();
    QFETCH(const bool, bell);
    SoundServer server;
    QVERIFY(server.start());
    CanberraSounds sounds = makeSounds();
    Recorder recorder;
    QTRY_VERIFY(recorder.isRecording());
    QCOMPARE(recorder.peak(), 0);
    QVERIFY(bell || sounds.play(shutter));
    QVERIFY(recorder.hears([&] { bell ? sounds.beep() : void(sounds.play(shutter)); }));
    const double took = duration([&] { bell ? sounds.beep() : void(sounds.play(shutter)); });
    QVERIFY2(took < longestCall, qPrintable(QString::number(took)));
    qInfo("%.2f ms a call", took);
}

void CanberraSoundsTest::serverThatStartsLaterIsFound()
{
    NEED_SERVER();
    CanberraSounds sounds = makeSounds();
    QTRY_VERIFY(!sounds.play(shutter));
    SoundServer server;
    QVERIFY(server.start());
    Recorder recorder;
    QTRY_VERIFY(recorder.isRecording());
    QTRY_VERIFY(sounds.play(shutter));
    QVERIFY(recorder.hears([&] { std::ignore = sounds.play(shutter); }));
}

void CanberraSoundsTest::restartedServerIsFound()
{
    NEED_SERVER();
    auto server = std::make_unique<SoundServer>();
    QVERIFY(server->start());
    CanberraSounds sounds = makeSounds();
    QTRY_VERIFY(sounds.play(shutter));
    server = std::make_unique<SoundServer>();
    QVERIFY(server->start());
    Recorder recorder;
    QTRY_VERIFY(recorder.isRecording());
    QVERIFY(recorder.hears([&] { std::ignore = sounds.play(shutter); }));
}

QTEST_MAIN(CanberraSoundsTest)
#include "CanberraSoundsTest.moc"
