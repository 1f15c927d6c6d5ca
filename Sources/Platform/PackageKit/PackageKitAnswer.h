// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PackageKit/PackageKitTransaction.h"
#include "Platform/UpdateSource.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The parts of PackageKit's name for one version of a package.
struct PackageId
{
    QString name;
    QString version;
    /// Of an installed package how it came, as "manual:local"; else the source it would come from.
    QString data;

    /// Absent for what is no such name.
    static std::optional<PackageId> parse(const QString &id);

    /// Whether it was installed from a file that no source of this system has.
    bool isFromFile() const;
};

/// What an outcome that is no success means for people. `command` does the same by hand.
UpdateFailure packageKitFailure(const PackageKitTransaction::Outcome &outcome,
                                const QString &command);

/// The commands that renew the lists of packages and update `package`, for the package manager
/// that this system has.
QString updateCommand(const QString &package);
