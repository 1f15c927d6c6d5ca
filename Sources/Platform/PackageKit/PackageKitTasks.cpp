// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitTasks.h"

#include "Platform/PackageKit/PackageKitAnswer.h"
#include "Platform/PackageKit/PackageKitNumbers.h"

#include <utility>

using namespace Qt::StringLiterals;

PackageKitTask::PackageKitTask(QString package, Limits limits,
                               UpdateSource::ProgressHandler progress,
                               UpdateSource::ResultHandler result)
    : m_package(std::move(package))
    , m_limits(limits)
    , m_progress(std::move(progress))
    , m_result(std::move(result))
{
}

void PackageKitTask::cancel()
{
    if (m_transaction) {
        m_transaction->cancel();
    }
}

void PackageKitTask::run(PackageKitTransaction::Request request,
                         PackageKitTransaction::Handler next)
{
    auto transaction =
        std::make_unique<PackageKitTransaction>(std::move(request), m_progress, std::move(next));
    // Called from the one before, which has more to do than to be destroyed.
    if (m_transaction) {
        m_transaction.release()->deleteLater();
    }
    m_transaction = std::move(transaction);
    m_transaction->start();
}

PackageKitTransaction::Request PackageKitTask::limited(const QString &method,
                                                       const QVariantList &arguments) const
{
    PackageKitTransaction::Request request;
    request.method = method;
    request.arguments = arguments;
    request.longestSilence = m_limits.silence;
    request.longestTime = m_limits.time;
    return request;
}

void PackageKitTask::resolve(PackageKitTransaction::Handler next)
{
    run(limited(u"Resolve"_s,
                {QVariant::fromValue(PackageKit::filterInstalled), QStringList{m_package}}),
        std::move(next));
}

void PackageKitTask::finish(const UpdateResult &result)
{
    if (const auto handler = std::exchange(m_result, nullptr)) {
        handler(result);
    }
}

void PackageKitTask::finish(UpdateResult::Kind kind)
{
    UpdateResult result;
    result.kind = kind;
    finish(result);
}

void PackageKitTask::fail(UpdateProblem problem)
{
    UpdateResult result;
    result.failure.problem = problem;
    // No command gets a newer package from where there is none.
    if (problem != UpdateProblem::NotInstalled && problem != UpdateProblem::NoSource) {
        result.failure.command = updateCommand(m_package);
    }
    finish(result);
}

void PackageKitTask::fail(const PackageKitTransaction::Outcome &outcome)
{
    UpdateResult result;
    result.failure = packageKitFailure(outcome, updateCommand(m_package));
    finish(result);
}
