// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Short sounds of the desktop. Main thread only; playing never blocks until the sound ends.
class SystemSounds
{
public:
    virtual ~SystemSounds() = default;

    /// The file of a sound such as "camera-shutter" in the user's sound theme or one that it
    /// builds on; empty when there is none. A sound that the theme silences has a file too.
    virtual QString file(const QString &soundName) const = 0;

    /// Starts playing a sound file. False when it cannot be read or nothing can play it. The file
    /// of a silenced sound plays as silence.
    virtual bool play(const QString &filePath) = 0;

    /// The desktop's alert sound.
    virtual void beep() = 0;
};
