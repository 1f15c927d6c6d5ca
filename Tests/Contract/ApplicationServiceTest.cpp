// SPDX-License-Identifier: MIT
// The program's name on a real session bus: one program of several gets it, and does what the
// others and the desktop ask.

#include "Platform/Freedesktop/FreedesktopApplicationService.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <sys/types.h>

using namespace Qt::StringLiterals;

namespace {

const QString id = u"org.example.Test-er"_s;
const QString path = u"/org/example/Test_er"_s;
const QString interface = u"org.freedesktop.Application"_s;

/// Another process with the same application id.
class Peer
{
public:
    explicit Peer(const QStringList &arguments)
    {
        m_process.start(QCoreApplication::applicationFilePath(), arguments);
    }
    ~Peer()
    {
        m_process.kill();
        m_process.waitForFinished(testPatience);
    }
    /// Waits for the line.
    bool says(const QByteArray &line)
    {
        return QTest::qWaitFor([&] { return hasSaid(line); }, testPatience);
    }
    QByteArray output() const { return m_output; }
    bool hasSaid(const QByteArray &line)
    {
        m_output += m_process.readAll();
        return m_output.contains(line);
    }
    /// Its exit status; -1 while it runs.
    int endStatus() const
    {
        return m_process.state() == QProcess::NotRunning ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

/// Lets the bus start a process with the application id when it is called.
class StartedByBus
{
public:
    StartedByBus()
        : m_folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                   u"/dbus-1/services"_s)
    {
        QDir().mkpath(m_folder);
        QFile service(m_folder + u"/test.service"_s);
        if (service.open(QIODevice::WriteOnly)) {
            const QString command = u"/bin/sh -c \"exec %1 peer > %2\""_s.arg(
                QCoreApplication::applicationFilePath(), m_output.fileName());
            service.write(u"[D-BUS Service]\nName=%1\nExec=%2\n"_s.arg(id, command).toUtf8());
        }
        service.close();
        reload();
    }
    ~StartedByBus()
    {
        QFile::remove(m_folder + u"/test.service"_s);
        reload();
        const auto bus = QDBusConnection::sessionBus();
        const QDBusReply<uint> process = bus.interface()->servicePid(id);
        if (process.isValid()) {
            ::kill(static_cast<pid_t>(process.value()), SIGKILL);
            const bool isGone = QTest::qWaitFor(
                [&] { return !bus.interface()->isServiceRegistered(id); }, testPatience);
            Q_ASSERT(isGone);
            Q_UNUSED(isGone)
        }
    }
    StartedByBus(const StartedByBus &) = delete;
    StartedByBus &operator=(const StartedByBus &) = delete;

    QByteArray output() const
    {
        QFile file(m_output.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    static void reload()
    {
        QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
    }

    class Output : public QTemporaryFile
    {
    public:
        // Only an opened one has a name.
        Output() { open(); }
    };
    QString m_folder;
    Output m_output;
};

/// The peer's side: holds the id and tells what it is asked, or holds it and never answers.
int runPeer(const QStringList &arguments)
{
    const auto say = [](const QByteArray &line) {
        std::fprintf(stdout, "%s\n", line.constData());
        std::fflush(stdout);
    };
    FreedesktopApplicationService service(id);
    const bool first = service.claim() == ApplicationService::Claim::First;
    say(first ? "first" : "taken");
    if (arguments.contains(u"forward"_s)) {
        return service.forward(u"capture"_s) ? 0 : 3;
    }
    if (arguments.contains(u"deaf"_s)) {
        QThread::sleep(60);
    }
    service.setActionHandler([&](const QString &action) { say("action " + action.toUtf8()); });
    return QCoreApplication::exec();
}

QDBusMessage call(const QString &method, const QVariantList &arguments,
                  const QString &onInterface = interface)
{
    QDBusMessage message = QDBusMessage::createMethodCall(id, path, onInterface, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

class ApplicationServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void objectPathFollowsTheId();
    void secondClaimIsTaken();
    void nameIsFreeAgainAfterwards();
    void forwardReachesTheFirst();
    void forwardToNobodyFails();
    void forwardToADeafOneGivesUp();
    void desktopsCallsBecomeActions();
    void beingStartedToBeActivatedIsNoAction();
    void beingStartedForAnActionIsOne();
    void unknownAndHostileActionsAreIgnored();
    void actionsBeforeTheHandlerAreKept();
    void everyStartIsTheFirstWithoutABus();
};

void ApplicationServiceTest::init()
{
    // The bus may hear later than we do that the process of an earlier test has ended.
    QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(id));
}

void ApplicationServiceTest::objectPathFollowsTheId()
{
    QCOMPARE(FreedesktopApplicationService(id).objectPath(), path);
}

void ApplicationServiceTest::secondClaimIsTaken()
{
    Peer peer({u"peer"_s});
    QVERIFY(peer.says("first"));
    FreedesktopApplicationService service(id);
    QCOMPARE(service.claim(), ApplicationService::Claim::Taken);
}

void ApplicationServiceTest::nameIsFreeAgainAfterwards()
{
    {
        FreedesktopApplicationService service(id);
        QCOMPARE(service.claim(), ApplicationService::Claim::First);
        Peer peer({u"peer"_s});
        QVERIFY(peer.says("taken"));
    }
    Peer peer({u"peer"_s});
    QVERIFY(peer.says("first"));
}

void ApplicationServiceTest::forwardReachesTheFirst()
{
    FreedesktopApplicationService service(id);
    QCOMPARE(service.claim(), ApplicationService::Claim::First);
    QStringList actions;
    service.setActionHandler([&](const QString &action) { actions.append(action); });
    Peer second({u"peer"_s, u"forward"_s});
    QTRY_COMPARE(actions, QStringList{u"capture"_s});
    QTRY_COMPARE(second.endStatus(), 0);
}

void ApplicationServiceTest::forwardToNobodyFails()
{
    QVERIFY(!FreedesktopApplicationService(id).forward(u"capture"_s));
}

void ApplicationServiceTest::forwardToADeafOneGivesUp()
{
    Peer peer({u"peer"_s, u"deaf"_s});
    QVERIFY(peer.says("first"));
    QElapsedTimer clock;
    clock.start();
    FreedesktopApplicationService service(id);
    QVERIFY(!service.forward(u"capture"_s));
    // The bus's own limit would be 25 seconds.
    QVERIFY2(clock.elapsed() < 20000, qPrintable(QString::number(clock.elapsed())));
}

void ApplicationServiceTest::desktopsCallsBecomeActions()
{
    Peer peer({u"peer"_s});
    QVERIFY(peer.says("first"));
    const auto bus = QDBusConnection::sessionBus();
    const QVariantMap data{{u"desktop-startup-id"_s, u"x"_s}};
    // Until its launch is over, that is part of it.
    QTRY_VERIFY(bus.call(call(u"Activate"_s, {data})).type() == QDBusMessage::ReplyMessage &&
                peer.hasSaid("action capture"));
    for (const QString &action : {u"settings"_s, u"check-for-updates"_s, u"quit"_s}) {
        QCOMPARE(bus.call(call(u"ActivateAction"_s, {action, QVariantList(), data})).type(),
                 QDBusMessage::ReplyMessage);
        QVERIFY(peer.says("action " + action.toUtf8()));
    }
}

void ApplicationServiceTest::beingStartedToBeActivatedIsNoAction()
{
    const StartedByBus peer;
    const auto bus = QDBusConnection::sessionBus();
    QCOMPARE(bus.call(call(u"Activate"_s, {QVariantMap()})).type(), QDBusMessage::ReplyMessage);
    bus.call(call(u"ActivateAction"_s, {u"settings"_s, QVariantList(), QVariantMap()}));
    QTRY_COMPARE(peer.output(), "first\naction settings\n");
    // It runs now.
    QTRY_VERIFY(bus.call(call(u"Activate"_s, {QVariantMap()})).type() ==
                    QDBusMessage::ReplyMessage &&
                peer.output().startsWith("first\naction settings\naction capture\n"));
}

void ApplicationServiceTest::beingStartedForAnActionIsOne()
{
    const StartedByBus peer;
    const auto bus = QDBusConnection::sessionBus();
    bus.call(call(u"ActivateAction"_s, {u"capture"_s, QVariantList(), QVariantMap()}));
    QTRY_COMPARE(peer.output(), "first\naction capture\n");
}

void ApplicationServiceTest::unknownAndHostileActionsAreIgnored()
{
    Peer peer({u"peer"_s});
    QVERIFY(peer.says("first"));
    const auto bus = QDBusConnection::sessionBus();
    const QStringList hostile{u""_s,         u"Capture"_s,
                              u"capture "_s, u"quit; rm -rf /"_s,
                              u"../quit"_s,  QString(1'000'000, u'q')};
    for (const QString &action : hostile) {
        bus.call(call(u"ActivateAction"_s, {action, QVariantList{1, u"x"_s}, QVariantMap()}));
    }
    bus.call(call(u"Open"_s, {QStringList{u"file:///etc/passwd"_s}, QVariantMap()}));
    // Neither other arguments nor other operations of the object are there to be called.
    QCOMPARE(bus.call(call(u"ActivateAction"_s, {1})).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(bus.call(call(u"deleteLater"_s, {})).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(bus.call(call(u"deliver"_s, {}, QString())).type(), QDBusMessage::ErrorMessage);

    bus.call(call(u"ActivateAction"_s, {u"settings"_s, QVariantList(), QVariantMap()}));
    QVERIFY(peer.says("action settings"));
    QCOMPARE(peer.output().count("action"), 1);
}

void ApplicationServiceTest::actionsBeforeTheHandlerAreKept()
{
    FreedesktopApplicationService service(id);
    QCOMPARE(service.claim(), ApplicationService::Claim::First);
    Peer second({u"peer"_s, u"forward"_s});
    QVERIFY(second.says("taken"));
    QTRY_COMPARE(second.endStatus(), 0); // while our event loop runs, to answer it
    QStringList actions;
    service.setActionHandler([&](const QString &action) { actions.append(action); });
    QVERIFY2(actions.isEmpty(), "not from within the call");
    QTRY_COMPARE(actions, QStringList{u"capture"_s});
}

void ApplicationServiceTest::everyStartIsTheFirstWithoutABus()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "");
    Peer one({u"peer"_s});
    Peer two({u"peer"_s});
    QVERIFY(one.says("first"));
    QVERIFY(two.says("first"));
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().value(1) == u"peer") {
        return runPeer(QCoreApplication::arguments());
    }
    ApplicationServiceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ApplicationServiceTest.moc"
