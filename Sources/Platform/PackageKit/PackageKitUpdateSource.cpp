// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitUpdateSource.h"

#include "Platform/PackageKit/PackageKitInstall.h"
#include "Platform/PackageKit/PackageKitLook.h"

#include <QDBusConnection>

#include <utility>

using namespace Qt::StringLiterals;

PackageKitUpdateSource::PackageKitUpdateSource(QString package, PackageKitTask::Limits limits)
    : m_package(std::move(package))
    , m_limits(limits)
{
}

bool PackageKitUpdateSource::start()
{
    // Not only after our own doings: after those of other programs too.
    return QDBusConnection::systemBus().connect(
        u"org.freedesktop.PackageKit"_s, u"/org/freedesktop/PackageKit"_s,
        u"org.freedesktop.PackageKit"_s, u"UpdatesChanged"_s, this, SIGNAL(changed()));
}

std::unique_ptr<UpdateTask> PackageKitUpdateSource::look(Look why, ProgressHandler progress,
                                                         ResultHandler result)
{
    auto task = std::make_unique<PackageKitLook>(m_package, why, m_limits, std::move(progress),
                                                 std::move(result));
    task->start();
    return task;
}

std::unique_ptr<UpdateTask> PackageKitUpdateSource::install(const Update &update,
                                                            ProgressHandler progress,
                                                            ResultHandler result)
{
    auto task = std::make_unique<PackageKitInstall>(m_package, update, m_limits,
                                                    std::move(progress), std::move(result));
    task->start();
    return task;
}
