// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QTimer>

#include <utility>

/// A task whose result is known from the beginning, told from the event loop as every result is.
class AnsweredUpdateTask : public QObject, public UpdateTask
{
    Q_OBJECT

public:
    AnsweredUpdateTask(UpdateResult result, UpdateSource::ResultHandler handler)
    {
        QTimer::singleShot(0, this, [result = std::move(result), handler = std::move(handler)] {
            // A copy: the handler may destroy the task, and this with it.
            const auto tell = handler;
            tell(UpdateResult(result));
        });
    }

    /// It is over before anybody could.
    void cancel() override {}
};
