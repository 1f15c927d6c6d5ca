// SPDX-License-Identifier: MIT
#include "Platform/Qt/WatchedProgramFile.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <utility>

WatchedProgramFile::WatchedProgramFile(QString path, const QString &running)
    : m_path(std::move(path))
    , m_running(identityOf(running))
{
    // One that is not the running one from the start, such as an interpreter, says nothing.
    if (!m_running || identityOf(m_path) != m_running) {
        m_running.reset();
        return;
    }
    // The folder, as a watch of the file would go with the file.
    m_watcher.addPath(QFileInfo(m_path).path());
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ProgramFile::changed);
}

bool WatchedProgramFile::isReplaced() const
{
    const auto present = identityOf(m_path);
    return m_running && present && present != m_running && QFileInfo(m_path).isExecutable();
}

std::optional<WatchedProgramFile::Identity> WatchedProgramFile::identityOf(const QString &path)
{
    struct stat found
    {
    };
    if (stat(QFile::encodeName(path).constData(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return std::nullopt;
    }
    return Identity{found.st_dev, found.st_ino};
}
