// SPDX-License-Identifier: MIT
#include "SoftwareUpdate.h"

#include "ForeignText.h"
#include "Platform/Platform.h"

#include <QPointer>

#include <algorithm>

namespace {
// In characters and in entries; beyond them nobody reads on.
constexpr qsizetype longestVersion = 60;
constexpr qsizetype longestNotes = 20000;
constexpr qsizetype longestDetails = 1000;
constexpr qsizetype longestPackageName = 100;
constexpr qsizetype mostPackages = 200;

QStringList shownPackages(const QStringList &names)
{
    QStringList shown = names.mid(0, mostPackages);
    for (QString &name : shown) {
        name = foreignLine(name, longestPackageName);
    }
    return shown;
}

Update shownUpdate(const Update &given)
{
    Update update = given;
    update.version = foreignLine(given.version, longestVersion);
    update.notes = foreignText(given.notes, longestNotes);
    update.installs = shownPackages(given.installs);
    update.updates = shownPackages(given.updates);
    update.removes = shownPackages(given.removes);
    return update;
}
} // namespace

void SoftwareUpdate::look()
{
    switch (m_stage) {
    case Stage::Idle:
    case Stage::UpToDate:
    case Stage::CouldNotLook:
        startLooking();
        break;
    case Stage::Looking:
    case Stage::Available:
    case Stage::Installing:
    case Stage::Installed:
    case Stage::CouldNotInstall:
        break;
    }
}

void SoftwareUpdate::tryAgain()
{
    // What could not be installed may be another version by now.
    if (m_stage == Stage::CouldNotLook || m_stage == Stage::CouldNotInstall) {
        startLooking();
    }
}

void SoftwareUpdate::startLooking()
{
    begin(Stage::Looking);
    m_task = Platform::current().updateSource->look(
        UpdateSource::Look::ForUser,
        [self = QPointer(this)](const UpdateProgress &progress) {
            if (self) {
                self->setProgress(progress);
            }
        },
        [self = QPointer(this)](const UpdateResult &result) {
            if (self) {
                self->lookDidFinish(result);
            }
        });
}

void SoftwareUpdate::install()
{
    if (m_stage != Stage::Available) {
        return;
    }
    begin(Stage::Installing);
    m_task = Platform::current().updateSource->install(
        m_update,
        [self = QPointer(this)](const UpdateProgress &progress) {
            if (self) {
                self->setProgress(progress);
            }
        },
        [self = QPointer(this)](const UpdateResult &result) {
            if (self) {
                self->installDidFinish(result);
            }
        });
}

void SoftwareUpdate::cancel()
{
    if (m_stage == Stage::Looking) {
        m_task.reset();
        enter(Stage::Idle);
    } else if (m_stage == Stage::Installing && m_progress.canCancel) {
        // Only the source knows whether it was in time.
        m_task->cancel();
    }
}

void SoftwareUpdate::dismiss()
{
    if (m_stage == Stage::Looking) {
        cancel();
    } else if (m_stage != Stage::Idle && m_stage != Stage::Installing &&
               m_stage != Stage::Installed) {
        enter(Stage::Idle);
    }
}

void SoftwareUpdate::lookDidFinish(const UpdateResult &result)
{
    m_task.reset();
    switch (result.kind) {
    case UpdateResult::Kind::UpToDate:
        enter(Stage::UpToDate);
        break;
    case UpdateResult::Kind::Available:
        m_update = shownUpdate(result.update);
        enter(Stage::Available);
        break;
    case UpdateResult::Kind::Installed:
        enter(Stage::Installed);
        break;
    case UpdateResult::Kind::Cancelled:
        enter(Stage::Idle);
        break;
    case UpdateResult::Kind::Failed:
        fail(Stage::CouldNotLook, result.failure);
        break;
    }
}

void SoftwareUpdate::installDidFinish(const UpdateResult &result)
{
    m_task.reset();
    switch (result.kind) {
    case UpdateResult::Kind::Installed:
        enter(Stage::Installed);
        break;
    case UpdateResult::Kind::Cancelled:
        enter(Stage::Available);
        break;
    case UpdateResult::Kind::UpToDate:
    case UpdateResult::Kind::Available:
        fail(Stage::CouldNotInstall, {UpdateProblem::NothingDone, {}, {}});
        break;
    case UpdateResult::Kind::Failed:
        fail(Stage::CouldNotInstall, result.failure);
        break;
    }
}

void SoftwareUpdate::fail(Stage stage, const UpdateFailure &failure)
{
    m_failure = failure;
    m_failure.details = foreignText(failure.details, longestDetails);
    enter(stage);
}

void SoftwareUpdate::begin(Stage stage)
{
    m_progress = {};
    enter(stage);
}

void SoftwareUpdate::enter(Stage stage)
{
    m_stage = stage;
    Q_EMIT changed();
}

void SoftwareUpdate::setProgress(const UpdateProgress &progress)
{
    m_progress = progress;
    if (m_progress.percentage) {
        m_progress.percentage = std::clamp(*m_progress.percentage, 0, 100);
    }
    Q_EMIT changed();
}
