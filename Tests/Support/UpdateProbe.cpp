// SPDX-License-Identifier: MIT
// Asks a source of updates from the command line, for tests that play what it talks to.
//
//     update-probe packagekit PACKAGE [SILENCE]      SILENCE in milliseconds
//     update-probe flatpak APPLICATION
//
// Each line of standard input is a command: start, look, look-in-background, install (what was
// found last, or the id that follows), cancel, drop (destroys the task), restart, quit. Everything
// that the source tells is a line of JSON on standard output.
#include "Platform/Flatpak/FlatpakRestart.h"
#include "Platform/Flatpak/FlatpakUpdateSource.h"
#include "Platform/PackageKit/PackageKitUpdateSource.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
void say(const QJsonObject &what)
{
    std::cout << QJsonDocument(what).toJson(QJsonDocument::Compact).constData() << std::endl;
}

QString name(UpdateProgress::Phase phase)
{
    static const QStringList names{u"preparing"_s, u"waiting for others"_s,
                                   u"waiting for authentication"_s, u"downloading"_s,
                                   u"installing"_s};
    return names.at(static_cast<int>(phase));
}

QString name(UpdateResult::Kind kind)
{
    static const QStringList names{u"up to date"_s, u"available"_s, u"installed"_s, u"cancelled"_s,
                                   u"failed"_s};
    return names.at(static_cast<int>(kind));
}

QString name(UpdateProblem problem)
{
    static const QStringList names{
        u"not from a package"_s, u"no service"_s,      u"service ended"_s, u"no answer"_s,
        u"nonsense"_s,           u"not installed"_s,   u"no source"_s,     u"not asked"_s,
        u"sources unreadable"_s, u"no network"_s,      u"busy"_s,          u"not authorized"_s,
        u"not trusted"_s,        u"download failed"_s, u"no space"_s,      u"gone"_s,
        u"held back"_s,          u"nothing done"_s,    u"other"_s};
    return names.at(static_cast<int>(problem));
}

QJsonObject described(const UpdateResult &result)
{
    QJsonObject described{{u"result"_s, name(result.kind)}};
    if (result.kind == UpdateResult::Kind::Available) {
        const Update &update = result.update;
        described.insert(u"id"_s, update.id);
        described.insert(u"version"_s, update.version);
        described.insert(u"notes"_s, update.notes);
        described.insert(u"installs"_s, QJsonArray::fromStringList(update.installs));
        described.insert(u"updates"_s, QJsonArray::fromStringList(update.updates));
        described.insert(u"removes"_s, QJsonArray::fromStringList(update.removes));
    }
    if (result.kind == UpdateResult::Kind::Failed) {
        described.insert(u"problem"_s, name(result.failure.problem));
        described.insert(u"details"_s, result.failure.details);
        described.insert(u"command"_s, result.failure.command);
    }
    return described;
}

class Probe : public QObject
{
public:
    explicit Probe(std::unique_ptr<UpdateSource> source)
        : m_source(std::move(source))
        , m_input(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(m_source.get(), &UpdateSource::changed, this, [] { say({{u"changed"_s, true}}); });
        connect(&m_input, &QSocketNotifier::activated, this, &Probe::read);
    }

    bool isRestartRequested() const { return m_restart.isRequested(); }

private:
    void read()
    {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        const QString command = QString::fromStdString(line);
        const QString argument = command.section(u' ', 1);
        if (command == u"start") {
            say({{u"started"_s, m_source->start()}});
        } else if (command == u"look") {
            m_task = m_source->look(UpdateSource::Look::ForUser, told(), answered());
        } else if (command == u"look-in-background") {
            m_task = m_source->look(UpdateSource::Look::InBackground, told(), answered());
        } else if (command.startsWith(u"install")) {
            if (!argument.isEmpty()) {
                m_update.id = argument;
            }
            m_task = m_source->install(m_update, told(), answered());
        } else if (command == u"cancel" && m_task) {
            m_task->cancel();
        } else if (command == u"drop") {
            m_task.reset();
            say({{u"dropped"_s, true}});
        } else if (command == u"restart") {
            m_restart.restart();
        } else if (command == u"quit") {
            QCoreApplication::quit();
        }
    }

    static UpdateSource::ProgressHandler told()
    {
        return [](const UpdateProgress &progress) {
            say({{u"progress"_s, name(progress.phase)},
                 {u"percentage"_s, progress.percentage.value_or(-1)},
                 {u"canCancel"_s, progress.canCancel}});
        };
    }

    UpdateSource::ResultHandler answered()
    {
        return [this](const UpdateResult &result) {
            if (result.kind == UpdateResult::Kind::Available) {
                m_update = result.update;
            }
            say(described(result));
            m_task.reset();
        };
    }

    std::unique_ptr<UpdateSource> m_source;
    QSocketNotifier m_input;
    std::unique_ptr<UpdateTask> m_task;
    Update m_update;
    FlatpakRestart m_restart{u"/app/bin/vellora"_s};
};

std::unique_ptr<UpdateSource> makeSource(const QStringList &arguments)
{
    if (arguments.value(1) == u"flatpak") {
        return std::make_unique<FlatpakUpdateSource>(arguments.value(2));
    }
    PackageKitTask::Limits limits;
    if (arguments.size() > 3) {
        limits.silence = std::chrono::milliseconds(arguments[3].toInt());
    }
    return std::make_unique<PackageKitUpdateSource>(arguments.value(2), limits);
}
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // As in the program, which looks seconds after its start: a connection that has just been
    // opened keeps signals back until the event loop runs, and gives answers at once.
    QDBusConnection::sessionBus();
    Probe probe(makeSource(QCoreApplication::arguments()));
    const int status = QCoreApplication::exec();
    if (probe.isRestartRequested()) {
        FlatpakRestart(u"/app/bin/vellora"_s).startSuccessor(argv);
    }
    return status;
}
