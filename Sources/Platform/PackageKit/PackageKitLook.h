// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PackageKit/PackageKitTasks.h"

#include <optional>

/// Looks for a newer version of one package. For the user it renews the lists, makes sure that it
/// can know of newer versions at all, and asks what the newer one brings; in the background it only
/// asks what is known already.
class PackageKitLook : public PackageKitTask
{
    Q_OBJECT

public:
    PackageKitLook(QString package, UpdateSource::Look why, Limits limits,
                   UpdateSource::ProgressHandler progress, UpdateSource::ResultHandler result);

    void start();

private:
    void refresh();
    void findInstalled();
    void findUpdates();
    void updatesFound(const PackageKitTransaction::Outcome &outcome);
    void nothingFound(bool isHeldBack);
    void findNotes();
    void findOtherChanges();
    void takeOtherChanges(const PackageKitTransaction::Outcome &outcome);
    void offer();

    UpdateSource::Look m_why;
    /// Of a refresh that did not succeed: some of what is known may be old.
    std::optional<PackageKitTransaction::Outcome> m_refreshFailure;
    Update m_update;
};
