// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What a package's changelog, as PackageKit hands it on, tells people. Of Debian's the line that
/// ends each version, with who packaged it and when, is left out, versions stand without the signs
/// around them, and items begin with a bullet; any other text stays as it is.
QString releaseNotes(const QString &changelog);
