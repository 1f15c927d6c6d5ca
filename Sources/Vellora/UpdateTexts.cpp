// SPDX-License-Identifier: MIT
#include "UpdateTexts.h"

#include <QStringList>

namespace {
/// More names than this are counted only.
constexpr qsizetype mostNames = 8;

} // namespace

QString UpdateTexts::heading(const SoftwareUpdate &update)
{
    const QString version = versionForPeople(update.update().version);
    switch (update.stage()) {
    case SoftwareUpdate::Stage::Idle:
        break;
    case SoftwareUpdate::Stage::Looking:
        return tr("Looking for updates");
    case SoftwareUpdate::Stage::UpToDate:
        return tr("Vellora is up to date");
    case SoftwareUpdate::Stage::Available:
        return version.isEmpty() ? tr("A new version of Vellora is available")
                                 : tr("Vellora %1 is available").arg(version);
    case SoftwareUpdate::Stage::Installing:
        return version.isEmpty() ? tr("Installing the new version")
                                 : tr("Installing Vellora %1").arg(version);
    case SoftwareUpdate::Stage::Installed:
        return version.isEmpty() ? tr("The new version is installed")
                                 : tr("Vellora %1 is installed").arg(version);
    case SoftwareUpdate::Stage::CouldNotLook:
        return tr("Vellora cannot look for updates.");
    case SoftwareUpdate::Stage::CouldNotInstall:
        return tr("The update was not installed");
    }
    return {};
}

QString UpdateTexts::explanation(const SoftwareUpdate &update)
{
    switch (update.stage()) {
    case SoftwareUpdate::Stage::Idle:
    case SoftwareUpdate::Stage::Looking:
    case SoftwareUpdate::Stage::Installing:
        break;
    case SoftwareUpdate::Stage::UpToDate:
        return tr("You have version %1, and the package sources offer no newer one.")
            .arg(QCoreApplication::applicationVersion());
    case SoftwareUpdate::Stage::Available:
        return tr("You have version %1.").arg(QCoreApplication::applicationVersion());
    case SoftwareUpdate::Stage::Installed:
        return tr("It is used from the next start on.");
    case SoftwareUpdate::Stage::CouldNotLook:
    case SoftwareUpdate::Stage::CouldNotInstall:
        return problem(update.failure().problem);
    }
    return {};
}

QString UpdateTexts::phase(UpdateProgress::Phase phase)
{
    switch (phase) {
    case UpdateProgress::Phase::Preparing:
        return tr("Asking the package sources…");
    case UpdateProgress::Phase::WaitingForOthers:
        return tr("Waiting until another installation has ended…");
    case UpdateProgress::Phase::WaitingForAuthentication:
        return tr("Waiting for your password…");
    case UpdateProgress::Phase::Downloading:
        return tr("Downloading…");
    case UpdateProgress::Phase::Installing:
        return tr("Installing…");
    }
    return {};
}

QString UpdateTexts::problem(UpdateProblem problem)
{
    switch (problem) {
    case UpdateProblem::NotFromPackage:
        return tr("This copy was not installed from a package source. To get a newer version, go "
                  "back to where you got this one.");
    case UpdateProblem::NoService:
        return tr("PackageKit, the service that would look for them, is not installed or cannot "
                  "be started.");
    case UpdateProblem::ServiceEnded:
        return tr("The package service ended in the middle of it. Try again.");
    case UpdateProblem::NoAnswer:
        return tr("The package service does not answer. It may be busy; try again later.");
    case UpdateProblem::Nonsense:
        return tr("The package service gave an answer that makes no sense.");
    case UpdateProblem::NotInstalled:
        return tr("No installed package holds this copy of Vellora. To get a newer version, go "
                  "back to where you got this one.");
    case UpdateProblem::NoSource:
        return tr("Its package was installed from a file, and no package source of this system "
                  "has newer ones. Add Vellora’s package source, or install a newer file.");
    case UpdateProblem::NotAsked:
        return tr("The desktop looks for new versions of Vellora by itself, and has not told of "
                  "one so far.");
    case UpdateProblem::SourcesUnreadable:
        return tr("Not every package source could be read, so there may be a newer version that "
                  "is not known here. Check the network and try again.");
    case UpdateProblem::NoNetwork:
        return tr("There is no network. Try again once you are connected.");
    case UpdateProblem::Busy:
        return tr("Another program is working on the packages. Try again when it has finished.");
    case UpdateProblem::NotAuthorized:
        return tr("This takes the password of somebody who may install programs, and it was not "
                  "given. Try again.");
    case UpdateProblem::NotTrusted:
        return tr("What the package source sent is not signed by anybody whom this system trusts, "
                  "and was left alone.");
    case UpdateProblem::DownloadFailed:
        return tr("It could not be downloaded as its package source describes it. Try again "
                  "later.");
    case UpdateProblem::NoSpace:
        return tr("There is not enough space on the disk. Delete something and try again.");
    case UpdateProblem::Gone:
        return tr("The package sources do not offer this version any more. Try again.");
    case UpdateProblem::HeldBack:
        return tr("There is a newer version, but other packages hold it back.");
    case UpdateProblem::NothingDone:
        return tr("The package service reports success, but the old version is still there.");
    case UpdateProblem::Other:
        return tr("The package service reported an error.");
    }
    return {};
}

QString UpdateTexts::names(const QStringList &packages)
{
    const QString shown = packages.mid(0, mostNames).join(tr(", ", "between names of packages"));
    const auto more = packages.size() - mostNames;
    return more > 0 ? tr("%1 and %n more", "names of packages", static_cast<int>(more)).arg(shown)
                    : shown;
}

QString UpdateTexts::otherChanges(const Update &update)
{
    QStringList lines;
    const auto add = [&lines](const QString &line, const QStringList &packages) {
        if (!packages.isEmpty()) {
            lines << line.arg(names(packages));
        }
    };
    add(tr("Also installs: %1"), update.installs);
    add(tr("Also updates: %1"), update.updates);
    add(tr("Removes: %1"), update.removes);
    return lines.join(u'\n');
}

QString UpdateTexts::activity(const SoftwareUpdate &update)
{
    const bool isActive = update.stage() == SoftwareUpdate::Stage::Looking ||
                          update.stage() == SoftwareUpdate::Stage::Installing;
    return isActive ? phase(update.progress().phase) : QString();
}

QString UpdateTexts::versionForPeople(const QString &version)
{
    const QString upstream = version.section(u':', version.contains(u':') ? 1 : 0);
    const auto revision = upstream.lastIndexOf(u'-');
    return revision > 0 ? upstream.left(revision) : upstream;
}
