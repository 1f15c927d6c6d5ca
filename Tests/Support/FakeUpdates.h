// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramFile.h"
#include "Platform/ProgramRestart.h"
#include "Platform/UpdateSource.h"

#include <QPointer>

#include <optional>
#include <utility>

/// Fakes of what brings a newer program and starts it; all fields are free to read and set.

class FakeUpdateSource : public UpdateSource
{
public:
    bool starts = true;
    int startCount = 0;
    /// Every look, in its order.
    QList<Look> looks;
    QList<Update> installs;
    /// How often the task under way was asked for its end.
    int cancelCount = 0;
    /// How many tasks there are.
    int taskCount = 0;

    bool start() override
    {
        ++startCount;
        return starts;
    }
    std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                     ResultHandler result) override
    {
        looks << why;
        return task(std::move(progress), std::move(result));
    }
    std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                        ResultHandler result) override
    {
        installs << update;
        return task(std::move(progress), std::move(result));
    }

    void tell(const UpdateProgress &progress) const { m_progress(progress); }
    /// Answers the task that was begun last.
    void answer(const UpdateResult &result)
    {
        const ResultHandler handler = std::exchange(m_result, nullptr);
        handler(result);
    }
    void change() { Q_EMIT changed(); }

private:
    struct Task : UpdateTask
    {
        explicit Task(FakeUpdateSource &owner)
            : m_owner(&owner)
        {
            ++m_owner->taskCount;
        }
        ~Task() override
        {
            if (m_owner) {
                --m_owner->taskCount;
            }
        }
        void cancel() override { ++m_owner->cancelCount; }

    private:
        QPointer<FakeUpdateSource> m_owner;
    };

    std::unique_ptr<UpdateTask> task(ProgressHandler progress, ResultHandler result)
    {
        m_progress = std::move(progress);
        m_result = std::move(result);
        return std::make_unique<Task>(*this);
    }

    ProgressHandler m_progress;
    ResultHandler m_result;
};

class FakeProgramRestart : public ProgramRestart
{
public:
    bool possible = true;
    int successorCount = 0;
    bool successor = false;
    /// What a predecessor handed over.
    std::optional<QString> handedOver;

    bool canRestart() const override { return possible; }
    void startSuccessor(char *[]) override { ++successorCount; }
    bool isSuccessor() const override { return successor; }
    const std::optional<QString> &toBeHandedOver() const { return clipboardText(); }
    std::optional<QString> takeClipboardText() override
    {
        return std::exchange(handedOver, std::nullopt);
    }
};

class FakeProgramFile : public ProgramFile
{
public:
    bool replaced = false;

    bool isReplaced() const override { return replaced; }
    /// An update has put another file in its place.
    void replace()
    {
        replaced = true;
        Q_EMIT changed();
    }
};
