// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PackageKit/PackageKitTransaction.h"
#include "Platform/UpdateSource.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

/// One transaction after the other, until there is a result.
class PackageKitTask : public QObject, public UpdateTask
{
    Q_OBJECT

public:
    /// How long PackageKit may say nothing, and how long one transaction of a look may take, until
    /// it is given up. apt itself tries a dead server for two minutes.
    struct Limits
    {
        std::chrono::milliseconds silence = std::chrono::minutes(3);
        std::chrono::milliseconds time = std::chrono::minutes(30);
    };

    void cancel() override;

protected:
    PackageKitTask(QString package, Limits limits, UpdateSource::ProgressHandler progress,
                   UpdateSource::ResultHandler result);

    /// Does `request` next. `next` is called unless the task is destroyed before.
    void run(PackageKitTransaction::Request request, PackageKitTransaction::Handler next);
    /// A request that gives up in time.
    PackageKitTransaction::Request limited(const QString &method,
                                           const QVariantList &arguments) const;
    /// Asks which version is installed.
    void resolve(PackageKitTransaction::Handler next);

    void finish(const UpdateResult &result);
    void finish(UpdateResult::Kind kind);
    void fail(UpdateProblem problem);
    void fail(const PackageKitTransaction::Outcome &outcome);

    const QString &package() const { return m_package; }

private:
    QString m_package;
    Limits m_limits;
    UpdateSource::ProgressHandler m_progress;
    UpdateSource::ResultHandler m_result;
    std::unique_ptr<PackageKitTransaction> m_transaction;
};
