// SPDX-License-Identifier: MIT
#include "Platform/Portal/AwaitedPictures.h"

#include "Platform/Portal/PortalPicture.h"
#include "Platform/Portal/PortalRequest.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Twice what a grab waits for a portal at most.
constexpr auto savingTime = 20s;

QString notesFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           u"/vellora/awaited-pictures"_s;
}

/// As GNOME's shell calls them for its portal ("Screenshot", "Screenshot-1"; what a user takes is
/// called after the time), and KDE's portal ("Screenshot_20230131_235959").
bool hasPortalsName(const QFileInfo &file)
{
    static const QRegularExpression name(uR"(^Screenshot(-\d+|_\d{8}_\d{6})?\.png$)"_s);
    return name.match(file.fileName()).hasMatch();
}

QFileInfoList picturesSavedAfter(const QDateTime &askedAt)
{
    QFileInfoList found;
    QStringList folders{QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                        QDir::homePath()};
    folders.removeDuplicates();
    for (const QString &folder : std::as_const(folders)) {
        const QFileInfoList files =
            QDir(folder).entryInfoList({u"Screenshot*.png"_s}, QDir::Files | QDir::NoSymLinks);
        for (const QFileInfo &file : files) {
            const std::chrono::milliseconds after(askedAt.msecsTo(file.lastModified()));
            if (hasPortalsName(file) && after >= -fileTimeCoarseness && after <= savingTime) {
                found << file;
            }
        }
    }
    return found;
}
} // namespace

AwaitedPicture::AwaitedPicture()
    : m_askedAt(QDateTime::currentDateTime())
    , m_note(notesFolder() + u'/' + portalToken())
{
    // Where there can be no note, a kill leaves the picture.
    if (QDir().mkpath(notesFolder())) {
        QFile note(m_note);
        [[maybe_unused]] const bool isNoted = note.open(QIODevice::WriteOnly);
    }
}

void AwaitedPicture::end()
{
    QFile::remove(m_note);
}

void removeLeftPictures(SystemLog &log)
{
    const QFileInfoList notes =
        QDir(notesFolder()).entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden);
    for (const QFileInfo &note : notes) {
        const QFileInfoList pictures = picturesSavedAfter(note.lastModified());
        QFile::remove(note.filePath());
        // Of several it cannot be told which is not the user's.
        if (pictures.size() == 1 && QFile::moveToTrash(pictures.first().filePath())) {
            log.logVerbatim(
                u"A picture of the screen from a run that was ended is in the trash: %1"_s.arg(
                    pictures.first().filePath()));
        }
    }
}
