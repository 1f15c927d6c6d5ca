// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitInstall.h"

#include "Platform/PackageKit/PackageKitAnswer.h"
#include "Platform/PackageKit/PackageKitNumbers.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using Outcome = PackageKitTransaction::Outcome;

PackageKitInstall::PackageKitInstall(QString package, Update update, Limits limits,
                                     UpdateSource::ProgressHandler progress,
                                     UpdateSource::ResultHandler result)
    : PackageKitTask(std::move(package), limits, std::move(progress), std::move(result))
    , m_update(std::move(update))
{
}

void PackageKitInstall::start()
{
    PackageKitTransaction::Request request;
    request.method = u"UpdatePackages"_s;
    request.arguments = {QVariant::fromValue(PackageKit::onlyTrusted), QStringList{m_update.id}};
    // Without limits: other installations and passwords take the time that they take.
    run(std::move(request), [this](const Outcome &outcome) { installed(outcome); });
}

void PackageKitInstall::installed(const Outcome &outcome)
{
    // A service that ended may have done its work before, and a success may have done nothing.
    if (outcome.succeeded() || outcome.end == PackageKitTransaction::End::ServiceEnded) {
        verify(outcome);
    } else if (outcome.end == PackageKitTransaction::End::Finished &&
               outcome.exit == PackageKit::ExitCancelled) {
        // Whatever error goes with it.
        finish(UpdateResult::Kind::Cancelled);
    } else {
        fail(outcome);
    }
}

void PackageKitInstall::verify(const Outcome &outcome)
{
    resolve([this, outcome](const Outcome &resolved) {
        const bool isThere = std::ranges::any_of(resolved.packages, [this](const auto &named) {
            const auto id = PackageId::parse(named.id);
            return id && id->name == package() && id->version == m_update.version &&
                   named.info == PackageKit::InfoInstalled;
        });
        if (isThere) {
            finish(UpdateResult::Kind::Installed);
        } else if (!outcome.succeeded()) {
            fail(outcome);
        } else if (!resolved.succeeded()) {
            fail(resolved);
        } else {
            fail(UpdateProblem::NothingDone);
        }
    });
}
