// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandSocket.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// A private runtime folder in which this process listens as a compositor does.
class WaylandSocketTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void socketOfTheProcess();
    void noSocketOfTheProcess();
    void unknownProcess();
    void nameThatIsSet();

private:
    void listen(const QByteArray &name);

    std::unique_ptr<QTemporaryDir> m_folder;
    QList<int> m_sockets;
};

void WaylandSocketTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_RUNTIME_DIR", m_folder->path().toUtf8());
    qunsetenv("WAYLAND_DISPLAY");
}

void WaylandSocketTest::cleanup()
{
    for (const int each : std::as_const(m_sockets)) {
        close(each);
    }
    m_sockets.clear();
}

void WaylandSocketTest::listen(const QByteArray &name)
{
    const QByteArray path = m_folder->filePath(QString::fromUtf8(name)).toUtf8();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    QVERIFY(path.size() < qsizetype(sizeof address.sun_path));
    std::ranges::copy(path, address.sun_path);
    m_sockets << socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QCOMPARE(bind(m_sockets.last(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    QCOMPARE(::listen(m_sockets.last(), 1), 0);
}

void WaylandSocketTest::socketOfTheProcess()
{
    listen("bus");
    listen("wayland-3");
    nameWaylandDisplayOf(getpid());
    QCOMPARE(qgetenv("WAYLAND_DISPLAY"), "wayland-3");
}

void WaylandSocketTest::noSocketOfTheProcess()
{
    listen("wayland-3");
    nameWaylandDisplayOf(getppid());
    // libwayland takes that for a name, where it would take none for "wayland-0".
    QVERIFY(qEnvironmentVariableIsSet("WAYLAND_DISPLAY"));
    QCOMPARE(qgetenv("WAYLAND_DISPLAY"), "");
}

void WaylandSocketTest::unknownProcess()
{
    listen("wayland-3");
    nameWaylandDisplayOf(0);
    QVERIFY(qEnvironmentVariableIsSet("WAYLAND_DISPLAY"));
    QCOMPARE(qgetenv("WAYLAND_DISPLAY"), "");
}

void WaylandSocketTest::nameThatIsSet()
{
    listen("wayland-3");
    qputenv("WAYLAND_DISPLAY", "wayland-chosen");
    nameWaylandDisplayOf(getpid());
    QCOMPARE(qgetenv("WAYLAND_DISPLAY"), "wayland-chosen");
}

QTEST_GUILESS_MAIN(WaylandSocketTest)
#include "WaylandSocketTest.moc"
