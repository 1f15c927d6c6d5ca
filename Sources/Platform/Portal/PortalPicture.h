// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

#include <chrono>

/// How much earlier than it was written a file may say that it was: some file systems keep whole
/// seconds, and FAT pairs of them.
constexpr std::chrono::seconds fileTimeCoarseness(2);

/// A picture of the screen out of a file that a portal told of.
struct PortalPicture
{
    /// Null when there is none.
    QImage image;
    /// Why there is none, as a sentence for the log; else empty.
    QString problem;
};

/// Reads the picture and deletes its file, which the portal made for us alone: it is deleted only
/// if the picture was read from this very file, in a folder that portals write to, and the file is
/// not older than the question for it, at `askedAt`. Any other file that a portal names stays as it
/// is, and nothing that is not a plain file is opened for longer than it takes to see that.
PortalPicture takePortalPicture(const QString &uri, const QDateTime &askedAt);

/// Whether portals save pictures in the folder that holds this file. Portals of GNOME and KDE use
/// the user's folder for pictures, or the home folder where there is none; others the folders for
/// temporary files; that of a sandbox gives documents in the run-time folder.
bool isInPortalFolder(const QString &file);
