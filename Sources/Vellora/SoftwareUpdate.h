// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QObject>

#include <memory>

/// Where an update of the program stands that the user asked about: it looks, offers, installs,
/// and knows what may come next. Main thread only.
class SoftwareUpdate : public QObject
{
    Q_OBJECT

public:
    enum class Stage {
        Idle,
        Looking,
        UpToDate,
        Available,
        Installing,
        Installed, ///< and the running program is still the old one
        CouldNotLook,
        CouldNotInstall,
    };

    Stage stage() const { return m_stage; }
    /// Of the stages that look or install.
    const UpdateProgress &progress() const { return m_progress; }
    /// From `Available` on. Its texts are short enough to be shown, and plain.
    const Update &update() const { return m_update; }
    /// Of the stages that could not; its texts are short enough to be shown, and plain.
    const UpdateFailure &failure() const { return m_failure; }

    /// Looks anew, unless something is under way or to be answered by the user.
    void look();
    /// Asks for the end of what is under way. A look ends at once.
    void cancel();
    /// Installs what is available.
    void install();
    /// What could not be done is done again from its beginning.
    void tryAgain();
    /// The user has seen the answer and wants nothing of it now. What is being installed, and
    /// what waits for a restart, stays.
    void dismiss();

Q_SIGNALS:
    void changed();

private:
    void startLooking();
    void begin(Stage stage);
    void enter(Stage stage);
    void setProgress(const UpdateProgress &progress);
    void lookDidFinish(const UpdateResult &result);
    void installDidFinish(const UpdateResult &result);
    void fail(Stage stage, const UpdateFailure &failure);

    Stage m_stage = Stage::Idle;
    UpdateProgress m_progress;
    Update m_update;
    UpdateFailure m_failure;
    std::unique_ptr<UpdateTask> m_task;
};
