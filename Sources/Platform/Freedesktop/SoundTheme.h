// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Sound themes as the XDG sound theme specification lays them out on disk.
namespace SoundTheme {

/// The name of the theme that the user chose in the settings files of a desktop; empty when the
/// user chose none there.
QString userTheme();

/// The file of the sound `name`, such as "camera-shutter", in `theme`, in one that it inherits
/// from or in "freedesktop", which ends every chain. Empty when there is none.
QString file(const QString &name, const QString &theme);

/// Whether a file found so stands for a sound that the theme silences.
bool isSilenced(const QString &filePath);

} // namespace SoundTheme
