// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitLook.h"

#include "Platform/PackageKit/PackageKitAnswer.h"
#include "Platform/PackageKit/PackageKitNumbers.h"
#include "Platform/PackageKit/ReleaseNotes.h"

#include <utility>

using namespace Qt::StringLiterals;
using Outcome = PackageKitTransaction::Outcome;

namespace {
bool isCancelled(const Outcome &outcome)
{
    return outcome.end == PackageKitTransaction::End::Finished &&
           (outcome.exit == PackageKit::ExitCancelled ||
            outcome.exit == PackageKit::ExitCancelledPriority);
}

/// A package may be named once for every source that has it.
void addOnce(QStringList &names, const QString &name)
{
    if (!names.contains(name)) {
        names << name;
    }
}
} // namespace

PackageKitLook::PackageKitLook(QString package, UpdateSource::Look why, Limits limits,
                               UpdateSource::ProgressHandler progress,
                               UpdateSource::ResultHandler result)
    : PackageKitTask(std::move(package), limits, std::move(progress), std::move(result))
    , m_why(why)
{
}

void PackageKitLook::start()
{
    if (m_why == UpdateSource::Look::ForUser) {
        refresh();
    } else {
        findUpdates();
    }
}

void PackageKitLook::refresh()
{
    auto request = limited(u"RefreshCache"_s, {false});
    request.takesAnyLists = false;
    run(std::move(request), [this](const Outcome &outcome) {
        if (isCancelled(outcome)) {
            finish(UpdateResult::Kind::Cancelled);
        } else if (outcome.end != PackageKitTransaction::End::Finished) {
            fail(outcome);
        } else {
            // One source that cannot be read fails it, though the program's own was renewed.
            if (!outcome.succeeded()) {
                m_refreshFailure = outcome;
            }
            findInstalled();
        }
    });
}

void PackageKitLook::findInstalled()
{
    resolve([this](const Outcome &outcome) {
        if (!outcome.succeeded()) {
            fail(outcome);
            return;
        }
        bool isInstalled = false;
        bool isFollowed = false;
        for (const auto &named : outcome.packages) {
            const auto id = PackageId::parse(named.id);
            if (id && id->name == package() && named.info == PackageKit::InfoInstalled) {
                isInstalled = true;
                isFollowed = isFollowed || !id->isFromFile();
            }
        }
        if (!isInstalled) {
            fail(UpdateProblem::NotInstalled);
        } else if (!isFollowed && m_refreshFailure) {
            // Its source may be the one that could not be read.
            fail(*m_refreshFailure);
        } else if (!isFollowed) {
            fail(UpdateProblem::NoSource);
        } else {
            findUpdates();
        }
    });
}

void PackageKitLook::findUpdates()
{
    auto request = limited(u"GetUpdates"_s, {QVariant::fromValue(PackageKit::filterNone)});
    request.isInteractive = m_why == UpdateSource::Look::ForUser;
    run(std::move(request), [this](const Outcome &outcome) { updatesFound(outcome); });
}

void PackageKitLook::updatesFound(const Outcome &outcome)
{
    if (!outcome.succeeded()) {
        fail(outcome);
        return;
    }
    bool isHeldBack = false;
    for (const auto &named : outcome.packages) {
        const auto id = PackageId::parse(named.id);
        if (!id || id->name != package()) {
            continue;
        }
        if (named.info == PackageKit::InfoBlocked) {
            isHeldBack = true;
            continue;
        }
        m_update.id = named.id;
        m_update.version = id->version;
        break;
    }
    if (m_update.id.isEmpty()) {
        nothingFound(isHeldBack);
    } else if (m_why == UpdateSource::Look::ForUser) {
        findNotes();
    } else {
        offer();
    }
}

void PackageKitLook::nothingFound(bool isHeldBack)
{
    if (isHeldBack) {
        fail(UpdateProblem::HeldBack);
    } else if (m_refreshFailure) {
        fail(*m_refreshFailure);
    } else {
        finish(UpdateResult::Kind::UpToDate);
    }
}

void PackageKitLook::findNotes()
{
    run(limited(u"GetUpdateDetail"_s, {QStringList{m_update.id}}), [this](const Outcome &outcome) {
        // An update without notes is an update too.
        m_update.notes = releaseNotes(outcome.updateText);
        findOtherChanges();
    });
}

void PackageKitLook::findOtherChanges()
{
    run(limited(u"UpdatePackages"_s,
                {QVariant::fromValue(PackageKit::onlyTrusted | PackageKit::simulate),
                 QStringList{m_update.id}}),
        [this](const Outcome &outcome) {
            if (outcome.succeeded()) {
                takeOtherChanges(outcome);
                offer();
            } else {
                // What cannot even be tried is nothing to offer.
                fail(outcome);
            }
        });
}

void PackageKitLook::takeOtherChanges(const Outcome &outcome)
{
    for (const auto &named : outcome.packages) {
        const auto id = PackageId::parse(named.id);
        if (!id || id->name == package()) {
            continue;
        }
        switch (named.info) {
        case PackageKit::InfoInstalling:
            addOnce(m_update.installs, id->name);
            break;
        case PackageKit::InfoUpdating:
        case PackageKit::InfoReinstalling:
        case PackageKit::InfoDowngrading:
            addOnce(m_update.updates, id->name);
            break;
        case PackageKit::InfoRemoving:
        case PackageKit::InfoObsoleting:
            addOnce(m_update.removes, id->name);
            break;
        default:
            break;
        }
    }
}

void PackageKitLook::offer()
{
    UpdateResult result;
    result.kind = UpdateResult::Kind::Available;
    result.update = m_update;
    finish(result);
}
