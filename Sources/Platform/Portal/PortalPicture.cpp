// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalPicture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QStandardPaths>
#include <QUrl>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
bool isSame(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Deletes what `path` names if that is the file that `read` describes, and ours.
void removeIfOurs(const QString &path, const struct stat &read, const QDateTime &askedAt)
{
    const QDateTime saved = QDateTime::fromSecsSinceEpoch(read.st_mtim.tv_sec);
    struct stat named = {};
    const bool isNamed = lstat(QFile::encodeName(path).constData(), &named) == 0;
    const bool isLate =
        saved.msecsTo(askedAt) <= std::chrono::milliseconds(fileTimeCoarseness).count();
    if (isNamed && isSame(named, read) && isLate && isInPortalFolder(path)) {
        QFile::remove(path);
    }
}

bool isWithin(const QString &folder, const QString &whole)
{
    return !whole.isEmpty() && (folder == whole || folder.startsWith(whole + u'/'));
}

QString canonical(const QString &folder)
{
    return QFileInfo(folder).canonicalFilePath();
}

QString location(QStandardPaths::StandardLocation location)
{
    return canonical(QStandardPaths::writableLocation(location));
}
} // namespace

bool isInPortalFolder(const QString &file)
{
    const QString folder = canonical(QFileInfo(file).path());
    const QString home = canonical(QDir::homePath());
    if (!isWithin(folder, home)) {
        return isWithin(folder, location(QStandardPaths::TempLocation)) ||
               isWithin(folder, location(QStandardPaths::RuntimeLocation)) ||
               isWithin(folder, location(QStandardPaths::PicturesLocation));
    }
    // Without a folder for pictures, that is the home folder, of which only its own files count.
    const QString pictures = location(QStandardPaths::PicturesLocation);
    return folder == home || (pictures != home && isWithin(folder, pictures)) ||
           isWithin(folder, location(QStandardPaths::GenericCacheLocation));
}

PortalPicture takePortalPicture(const QString &uri, const QDateTime &askedAt)
{
    const auto failure = [&uri](const QString &reason) {
        return PortalPicture{
            {}, u"The portal's picture of the screen, “%1”, cannot be read: %2"_s.arg(uri, reason)};
    };
    const QString path = QUrl(uri).toLocalFile();
    if (path.isEmpty()) {
        return failure(u"not a file"_s);
    }
    // Not blocking, as a pipe would until somebody writes to it.
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        return failure(QString::fromLocal8Bit(std::strerror(errno)));
    }
    QFile file;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        return failure(u"not a file"_s);
    }
    QImageReader reader(&file);
    // By what is in it, whatever it is called.
    reader.setDecideFormatFromContent(true);
    const QImage image = reader.read();
    if (image.isNull()) {
        return failure(reader.errorString());
    }
    removeIfOurs(path, status, askedAt);
    return {image.convertToFormat(QImage::Format_RGB32), {}};
}
