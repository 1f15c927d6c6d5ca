// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSettings>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>

/// What the program keeps between runs: typed values under keys, in an INI file.
///
/// A file that cannot be read reads as empty. A file with damaged lines keeps its other keys, and
/// before the first write to it a copy is put beside it (".damaged"). Main thread only.
class UserDefaults
{
public:
    /// The file in the user's configuration folder (XDG_CONFIG_HOME).
    UserDefaults();
    explicit UserDefaults(const QString &filePath);
    /// Writes what is still gathered.
    ~UserDefaults();

    /// Called at the first write that did not reach the file, such as on a full or read-only disk.
    std::function<void()> writeDidFail;

    QString filePath() const { return m_file.fileName(); }

    bool contains(const QString &key) const;

    /// Absent when there is nothing under `key` or it is not text.
    std::optional<QString> string(const QString &key) const;

    /// True for "true", "yes" and numbers other than 0, in any case; else false.
    bool boolean(const QString &key) const;

    /// False when the value did not reach the file, which then is as it was; the value holds for
    /// this run all the same, unless it is taken back by `revert`.
    bool set(const QString &key, const QString &text);
    bool set(const QString &key, bool value);
    /// A literal would convert to bool first.
    bool set(const QString &key, const char16_t *text) = delete;

    /// Forgets a value that did not reach the file: what is stored holds again.
    void revert(const QString &key);

    /// For what changes many times a second, such as a window's frame while it is dragged: readable
    /// at once, and in the file a moment after the last change, so that no change waits for a disk.
    void setGathered(const QString &key, const QString &text);

    /// Writes what is gathered now.
    void flush();

private:
    bool write(const QString &key, const QString &text);
    bool writeToFile(const QString &key, const QString &text);
    bool keepDamagedFile();

    QSettings m_file;
    /// Values that are not in the file, for they are gathered or did not reach it.
    QHash<QString, QString> m_gathered;
    QTimer m_gathering;
    bool m_damaged = false;
};
