// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/SystemLog.h"

#include <QDateTime>
#include <QString>

/// Notes that a portal is being asked for a picture of the screen, which it will save in a file
/// that only we delete: an empty file in the user's cache, made now, whose age tells when. It stays
/// when the program is killed, or gives up, before it has the picture. From any thread.
class AwaitedPicture
{
public:
    AwaitedPicture();
    /// The portal has answered: nothing is left to wait for.
    void end();

    QDateTime askedAt() const { return m_askedAt; }

private:
    QDateTime m_askedAt;
    QString m_note;
};

/// Moves the pictures that portals saved for runs that did not live to delete them to the user's
/// trash, with a line in `log` each, and forgets what was noted.
///
/// A picture is taken for one of those only if it is the one file in the portals' folders that has
/// a name as portals give them and was saved within seconds of the question. To the trash, as even
/// that might be the user's own.
void removeLeftPictures(SystemLog &log);
