// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitAnswer.h"

#include "Platform/PackageKit/PackageKitNumbers.h"

#include <QStandardPaths>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
UpdateProblem problemOfError(quint32 error)
{
    switch (error) {
    case PackageKit::ErrorNoNetwork:
        return UpdateProblem::NoNetwork;
    case PackageKit::ErrorGpgFailure:
    case PackageKit::ErrorBadSignature:
    case PackageKit::ErrorMissingSignature:
    case PackageKit::ErrorInstallUnsigned:
    case PackageKit::ErrorUpdateUnsigned:
        return UpdateProblem::NotTrusted;
    case PackageKit::ErrorPackageNotFound:
    case PackageKit::ErrorUpdateNotFound:
        return UpdateProblem::Gone;
    case PackageKit::ErrorPackageDownloadFailed:
    case PackageKit::ErrorPackageCorrupt:
    case PackageKit::ErrorNoMoreMirrors:
        return UpdateProblem::DownloadFailed;
    case PackageKit::ErrorDependencyResolutionFailed:
        return UpdateProblem::HeldBack;
    case PackageKit::ErrorCannotGetLock:
    case PackageKit::ErrorLockRequired:
        return UpdateProblem::Busy;
    case PackageKit::ErrorNoSpace:
        return UpdateProblem::NoSpace;
    case PackageKit::ErrorNotAuthorized:
        return UpdateProblem::NotAuthorized;
    case PackageKit::ErrorCannotFetchSources:
        return UpdateProblem::SourcesUnreadable;
    default:
        return UpdateProblem::Other;
    }
}

UpdateProblem problem(const PackageKitTransaction::Outcome &outcome)
{
    switch (outcome.end) {
    case PackageKitTransaction::End::NoService:
        return UpdateProblem::NoService;
    case PackageKitTransaction::End::ServiceEnded:
        return UpdateProblem::ServiceEnded;
    case PackageKitTransaction::End::NoAnswer:
        return UpdateProblem::NoAnswer;
    case PackageKitTransaction::End::Nonsense:
        return UpdateProblem::Nonsense;
    case PackageKitTransaction::End::Finished:
        break;
    }
    if (outcome.exit == PackageKit::ExitKeyRequired ||
        outcome.exit == PackageKit::ExitNeedUntrusted) {
        return UpdateProblem::NotTrusted;
    }
    return outcome.error ? problemOfError(*outcome.error) : UpdateProblem::Other;
}
} // namespace

std::optional<PackageId> PackageId::parse(const QString &id)
{
    const QStringList parts = id.split(u';');
    if (parts.size() != 4 || parts[0].isEmpty()) {
        return std::nullopt;
    }
    return PackageId{parts[0], parts[1], parts[3]};
}

bool PackageId::isFromFile() const
{
    return data.section(u':', -1) == u"local";
}

UpdateFailure packageKitFailure(const PackageKitTransaction::Outcome &outcome,
                                const QString &command)
{
    return {problem(outcome), outcome.message, command};
}

QString updateCommand(const QString &package)
{
    using Manager = std::pair<QString, QString>;
    static const std::array managers{
        Manager(u"apt-get"_s, u"sudo apt update && sudo apt install --only-upgrade %1"_s),
        Manager(u"dnf"_s, u"sudo dnf upgrade --refresh %1"_s),
        Manager(u"zypper"_s, u"sudo zypper refresh && sudo zypper update %1"_s),
        Manager(u"pacman"_s, u"sudo pacman -Syu"_s),
    };
    for (const auto &[program, command] : managers) {
        if (!QStandardPaths::findExecutable(program).isEmpty()) {
            return command.contains(u"%1") ? command.arg(package) : command;
        }
    }
    return {};
}
