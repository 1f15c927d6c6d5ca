// SPDX-License-Identifier: MIT
#include "Platform/Flatpak/FlatpakInstall.h"

#include "Platform/Flatpak/FlatpakPortal.h"
#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// What "status" counts.
enum Status : uint {
    Running = 0,
    NothingToDo = 1,
    Done = 2,
    Failed = 3,
};

std::optional<uint> number(const QVariantMap &info, const QString &key)
{
    const QVariant value = info.value(key);
    return value.typeId() == QMetaType::UInt ? std::optional(value.toUInt()) : std::nullopt;
}

/// How much of all operations is done, each counted alike.
std::optional<int> percentage(const QVariantMap &info)
{
    const auto operations = number(info, u"n_ops"_s);
    const auto operation = number(info, u"op"_s);
    const auto progress = number(info, u"progress"_s);
    if (!operations || *operations == 0 || !operation || !progress) {
        return std::nullopt;
    }
    const double done = (*operation + std::min(*progress, 100U) / 100.0) / *operations;
    return static_cast<int>(std::min(done, 1.0) * 100);
}
} // namespace

FlatpakInstall::FlatpakInstall(QString monitor, QString command,
                               UpdateSource::ProgressHandler progress,
                               UpdateSource::ResultHandler result)
    : m_monitor(std::move(monitor))
    , m_command(std::move(command))
    , m_progress(std::move(progress))
    , m_result(std::move(result))
{
}

void FlatpakInstall::start()
{
    auto bus = sessionBus();
    if (!bus || m_monitor.isEmpty()) {
        QTimer::singleShot(0, this, [this] { fail(UpdateProblem::NoService); });
        return;
    }
    auto *portalEnd = new QDBusServiceWatcher(FlatpakPortal::service, *bus,
                                              QDBusServiceWatcher::WatchForUnregistration, this);
    connect(portalEnd, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { fail(UpdateProblem::ServiceEnded); });
    bus->connect(FlatpakPortal::service, m_monitor, FlatpakPortal::monitorInterface, u"Progress"_s,
                 this, SLOT(progressed(QVariantMap)));
    auto *watcher =
        new QDBusPendingCallWatcher(bus->asyncCall(FlatpakPortal::monitorCall(
                                        m_monitor, u"Update"_s, {QString(), QVariantMap()})),
                                    this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError()) {
            fail(UpdateProblem::Other, watcher->error().message());
        }
    });
}

void FlatpakInstall::progressed(const QVariantMap &info)
{
    const auto status = number(info, u"status"_s);
    if (!m_result || !status) {
        return;
    }
    switch (*status) {
    case Running: {
        const auto tell = m_progress;
        tell({UpdateProgress::Phase::Downloading, percentage(info), false});
        break;
    }
    case Done: {
        UpdateResult result;
        result.kind = UpdateResult::Kind::Installed;
        finish(result);
        break;
    }
    case NothingToDo:
        fail(UpdateProblem::Gone);
        break;
    case Failed:
    default: {
        const QString message = info.value(u"error_message"_s).toString();
        fail(UpdateProblem::Other, message.isEmpty() ? info.value(u"error"_s).toString() : message);
        break;
    }
    }
}

void FlatpakInstall::fail(UpdateProblem problem, const QString &details)
{
    UpdateResult result;
    result.failure = {problem, details, m_command};
    finish(result);
}

void FlatpakInstall::finish(const UpdateResult &result)
{
    if (const auto handler = std::exchange(m_result, nullptr)) {
        handler(result);
    }
}
