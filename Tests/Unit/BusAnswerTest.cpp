// SPDX-License-Identifier: MIT
// A session bus that takes connections and says nothing must not hold the start up.

#include "Platform/Freedesktop/BusAnswer.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// A socket that takes connections and never says a word.
class SilentServer
{
public:
    bool listen(const QByteArray &path)
    {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), name.sun_path);
        unlink(path.constData());
        m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return bind(m_socket, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0 &&
               ::listen(m_socket, 8) == 0;
    }

    void close()
    {
        ::close(m_socket);
        m_socket = -1;
    }

private:
    int m_socket = -1;
};
} // namespace

class BusAnswerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_folder.isValid());
        m_path = m_folder.filePath(u"bus"_s);
        QVERIFY(m_server.listen(m_path.toUtf8()));
    }

    void cleanup() { m_server.close(); }

    void silence() { QVERIFY(!busAnswers(address(), 50ms)); }

    void theLimitHolds()
    {
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!busAnswers(address(), 100ms));
        // The upper bound is generous, because the machine may be busy.
        QVERIFY(timer.elapsed() >= 95 && timer.elapsed() < testPatience);
    }

    void realBus()
    {
        // Every test runs on a bus of its own.
        QVERIFY(busAnswers(qgetenv("DBUS_SESSION_BUS_ADDRESS"), 30s));
    }

    void nobodyListens()
    {
        m_server.close();
        QVERIFY(busAnswers(address(), 50ms));
    }

    void oddAddresses_data()
    {
        QTest::addColumn<QByteArray>("address");
        for (const char *text :
             {"", ";;;", "unix:", "unix:path=", "unix:path=%", "tcp:host=,port=x",
              "unix:abstract=%zz", "autolaunch:", "unix:runtime=no"}) {
            QTest::newRow(text) << QByteArray(text);
        }
        QTest::newRow("longer than a socket's name") << "unix:path=/" + QByteArray(5000, 'x');
    }

    void oddAddresses()
    {
        QFETCH(QByteArray, address);
        QVERIFY(busAnswers(address, 50ms));
    }

    void aSilentBusIsLeft()
    {
        const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        QVERIFY(leaveSilentSessionBus());
        QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), before);
        qputenv("DBUS_SESSION_BUS_ADDRESS", address());
        QVERIFY(!leaveSilentSessionBus());
        // What is left there refuses at once.
        QVERIFY(busAnswers(qgetenv("DBUS_SESSION_BUS_ADDRESS"), 50ms));
        QVERIFY(qgetenv("DBUS_SESSION_BUS_ADDRESS") != address());
        qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    }

private:
    QByteArray address() const { return "unix:path=" + m_path.toUtf8(); }

    QTemporaryDir m_folder;
    QString m_path;
    SilentServer m_server;
};

QTEST_GUILESS_MAIN(BusAnswerTest)
#include "BusAnswerTest.moc"
