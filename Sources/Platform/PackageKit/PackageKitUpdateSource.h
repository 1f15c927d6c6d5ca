// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PackageKit/PackageKitTasks.h"
#include "Platform/UpdateSource.h"

#include <QString>

/// Of a copy that came in a package: PackageKit looks for newer ones and installs them, whatever
/// package manager this system has. Without PackageKit it says so when asked.
class PackageKitUpdateSource : public UpdateSource
{
    Q_OBJECT

public:
    /// `package` is the name of the package that this copy came in.
    explicit PackageKitUpdateSource(QString package, PackageKitTask::Limits limits = {});

    /// Listens to changes of what PackageKit knows. False without a system bus. Does not start
    /// PackageKit.
    bool start() override;
    std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                     ResultHandler result) override;
    std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                        ResultHandler result) override;

private:
    QString m_package;
    PackageKitTask::Limits m_limits;
};
