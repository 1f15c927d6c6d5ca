// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <memory>

/// Looks for newer versions while nobody asks: at most once a day, remembered from run to run,
/// and only for what the system knows already. Main thread only.
class UpdateSchedule : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    explicit UpdateSchedule(Clock clock = [] { return QDateTime::currentDateTimeUtc(); });

    /// Begins. False when the source of updates does not tell of changes; then nothing is looked
    /// for.
    bool start();

    /// The user knows of this version; it is not told of any more.
    static void rememberVersion(const QString &version);

Q_SIGNALS:
    /// There is a version that was not told of before.
    void newVersion(const QString &version);

private:
    void sourceDidChange();
    void lookWhenDue();
    void look();
    void lookDidFinish(const UpdateResult &result);
    std::chrono::milliseconds untilDue() const;

    Clock m_clock;
    std::unique_ptr<UpdateTask> m_task;
    /// Something changed since the last look, and a look is planned.
    bool m_isPlanned = false;
};
