// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Freedesktop/SoundWorker.h"
#include "Platform/SystemSounds.h"

#include <functional>

/// The sound theme's files, played through libcanberra at the sound server's own volume.
class CanberraSounds : public SystemSounds
{
public:
    /// `themeName` answers the name of the user's sound theme and is asked for every sound.
    CanberraSounds(const SoundWorker::Identity &identity, std::function<QString()> themeName);

    QString file(const QString &soundName) const override;

    /// True for a file of a format that can be played, while there is a sound server. Should the
    /// server refuse it after that, the alert sounds in its place.
    bool play(const QString &filePath) override;

    /// The theme's bell, else the bell of the window system.
    void beep() override;

private:
    std::function<QString()> m_themeName;
    SoundWorker m_worker;
};
