// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The numbers of PackageKit's D-Bus interface that the program meets, as its pk-enum.h counts
/// them.
namespace PackageKit {
/// `info` of a package: its lower half. The upper half may hold the update's severity.
inline constexpr quint32 infoMask = 0xffff;
enum Info : quint32 {
    InfoInstalled = 1,
    InfoBlocked = 9,
    InfoUpdating = 11,
    InfoInstalling = 12,
    InfoRemoving = 13,
    InfoObsoleting = 15,
    InfoReinstalling = 19,
    InfoDowngrading = 20,
};

/// What a transaction is doing.
enum Status : quint32 {
    StatusRemove = 6,
    StatusDownload = 8,
    StatusInstall = 9,
    StatusUpdate = 10,
    StatusCleanup = 11,
    StatusObsolete = 12,
    StatusTestCommit = 15,
    StatusCommit = 16,
    StatusWaitingForLock = 30,
    StatusWaitingForAuthentication = 31,
};
/// A percentage above this one means that nobody can tell.
inline constexpr quint32 wholePercentage = 100;

/// How a transaction ended.
enum Exit : quint32 {
    ExitSuccess = 1,
    ExitCancelled = 3,
    ExitKeyRequired = 4,
    ExitNeedUntrusted = 8,
    ExitCancelledPriority = 9,
};

/// Why it did not succeed.
enum Error : quint32 {
    ErrorNoNetwork = 2,
    ErrorGpgFailure = 5,
    ErrorPackageNotFound = 8,
    ErrorPackageDownloadFailed = 10,
    ErrorDependencyResolutionFailed = 13,
    ErrorCannotGetLock = 26,
    ErrorBadSignature = 30,
    ErrorMissingSignature = 31,
    ErrorPackageCorrupt = 40,
    ErrorNoMoreMirrors = 43,
    ErrorNoSpace = 46,
    ErrorNotAuthorized = 48,
    ErrorUpdateNotFound = 49,
    ErrorInstallUnsigned = 50,
    ErrorUpdateUnsigned = 51,
    ErrorCannotFetchSources = 64,
    ErrorLockRequired = 67,
};

/// Bits of the filter of packages to be named.
inline constexpr quint64 filterNone = 1U << 1;
inline constexpr quint64 filterInstalled = 1U << 2;

/// Bits that say what a transaction may do.
inline constexpr quint64 onlyTrusted = 1U << 1;
inline constexpr quint64 simulate = 1U << 2;
} // namespace PackageKit
