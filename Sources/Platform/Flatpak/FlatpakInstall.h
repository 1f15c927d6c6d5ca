// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

/// Has Flatpak's portal install the newer version that it told of.
class FlatpakInstall : public QObject, public UpdateTask
{
    Q_OBJECT

public:
    /// `monitor` is where the portal told of it; `command` does the same by hand.
    FlatpakInstall(QString monitor, QString command, UpdateSource::ProgressHandler progress,
                   UpdateSource::ResultHandler result);

    void start();
    /// The portal cannot be stopped; it only ends with the one who asked.
    void cancel() override {}

private Q_SLOTS:
    void progressed(const QVariantMap &info);

private:
    void fail(UpdateProblem problem, const QString &details = {});
    void finish(const UpdateResult &result);

    QString m_monitor;
    QString m_command;
    UpdateSource::ProgressHandler m_progress;
    UpdateSource::ResultHandler m_result;
};
