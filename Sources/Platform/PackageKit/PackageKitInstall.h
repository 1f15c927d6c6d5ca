// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PackageKit/PackageKitTasks.h"

/// Installs one version of one package, and makes sure that it is there afterwards.
class PackageKitInstall : public PackageKitTask
{
    Q_OBJECT

public:
    PackageKitInstall(QString package, Update update, Limits limits,
                      UpdateSource::ProgressHandler progress, UpdateSource::ResultHandler result);

    void start();

private:
    void installed(const PackageKitTransaction::Outcome &outcome);
    void verify(const PackageKitTransaction::Outcome &outcome);

    Update m_update;
};
