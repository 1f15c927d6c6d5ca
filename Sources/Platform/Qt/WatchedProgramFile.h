// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramFile.h"

#include <QFileSystemWatcher>
#include <QString>

#include <optional>
#include <sys/types.h>

/// The running program's file, watched by its folder: updates put a new file in its place. Where
/// the system does not tell which file runs, nothing is ever replaced.
class WatchedProgramFile : public ProgramFile
{
public:
    /// `path` is absolute: where the program was when it was started. `running` is where the system
    /// shows the file that runs.
    explicit WatchedProgramFile(QString path,
                                const QString &running = QStringLiteral("/proc/self/exe"));

    bool isReplaced() const override;

private:
    struct Identity
    {
        dev_t device;
        ino_t file;
        bool operator==(const Identity &) const = default;
    };
    static std::optional<Identity> identityOf(const QString &path);

    QString m_path;
    std::optional<Identity> m_running;
    QFileSystemWatcher m_watcher;
};
