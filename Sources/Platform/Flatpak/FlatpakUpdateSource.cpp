// SPDX-License-Identifier: MIT
#include "Platform/Flatpak/FlatpakUpdateSource.h"

#include "Platform/Flatpak/FlatpakInstall.h"
#include "Platform/Flatpak/FlatpakPortal.h"
#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// What is known is told; there is nothing to be called off but the telling.
class FlatpakLook : public QObject, public UpdateTask
{
public:
    void cancel() override {}
};
} // namespace

bool isInFlatpak()
{
    // The file that every sandbox has, and nothing else.
    return QFileInfo::exists(u"/.flatpak-info"_s);
}

FlatpakUpdateSource::FlatpakUpdateSource(QString applicationId)
    : m_applicationId(std::move(applicationId))
{
}

FlatpakUpdateSource::~FlatpakUpdateSource()
{
    FlatpakPortal::closeMonitor(m_monitor);
}

bool FlatpakUpdateSource::start()
{
    auto bus = sessionBus();
    if (!bus) {
        return false;
    }
    if (std::exchange(m_isAsked, true)) {
        return true;
    }
    m_hasAnswered = false;
    // Wherever the portal puts the monitor: it may tell of an update before it answers.
    bus->connect(FlatpakPortal::service, QString(), FlatpakPortal::monitorInterface,
                 u"UpdateAvailable"_s, this, SLOT(updateAvailable(QVariantMap)));
    auto *watcher = new QDBusPendingCallWatcher(
        bus->asyncCall(FlatpakPortal::call(u"CreateUpdateMonitor"_s, {QVariantMap()})), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        m_monitor = reply.isError() ? QString() : reply.value().path();
        m_hasAnswered = true;
        // A portal that is not there may come with the next look.
        m_isAsked = !m_monitor.isEmpty();
        Q_EMIT portalAnswered();
    });
    return true;
}

void FlatpakUpdateSource::updateAvailable(const QVariantMap &commits)
{
    const QString running = commits.value(u"running-commit"_s).toString();
    const QString local = commits.value(u"local-commit"_s).toString();
    const QString remote = commits.value(u"remote-commit"_s).toString();
    m_isAvailable = !remote.isEmpty() && remote != local;
    m_isInstalled = !m_isAvailable && !local.isEmpty() && local != running;
    m_commit = remote;
    Q_EMIT changed();
}

UpdateResult FlatpakUpdateSource::knownResult() const
{
    UpdateResult result;
    if (m_isAvailable) {
        result.kind = UpdateResult::Kind::Available;
        result.update.id = m_commit;
    } else if (m_isInstalled) {
        result.kind = UpdateResult::Kind::Installed;
    } else {
        result.failure.problem =
            m_monitor.isEmpty() ? UpdateProblem::NoService : UpdateProblem::NotAsked;
        result.failure.command = u"flatpak update "_s + m_applicationId;
    }
    return result;
}

std::unique_ptr<UpdateTask> FlatpakUpdateSource::look(Look, ProgressHandler, ResultHandler result)
{
    auto task = std::make_unique<FlatpakLook>();
    const auto answer = [this, result = std::move(result)] {
        // A copy: the handler may destroy the task, and this with it.
        const ResultHandler tell = result;
        tell(knownResult());
    };
    if (start() && !m_hasAnswered) {
        connect(this, &FlatpakUpdateSource::portalAnswered, task.get(), answer,
                Qt::SingleShotConnection);
    } else {
        QTimer::singleShot(0, task.get(), answer);
    }
    return task;
}

std::unique_ptr<UpdateTask> FlatpakUpdateSource::install(const Update &, ProgressHandler progress,
                                                         ResultHandler result)
{
    auto task = std::make_unique<FlatpakInstall>(m_monitor, u"flatpak update "_s + m_applicationId,
                                                 std::move(progress), std::move(result));
    task->start();
    return task;
}
