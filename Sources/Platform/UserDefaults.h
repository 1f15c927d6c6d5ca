// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QString>

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

    QString filePath() const { return m_file.fileName(); }

    bool contains(const QString &key) const;

    /// Absent when there is nothing under `key` or it is not text.
    std::optional<QString> string(const QString &key) const;

    /// True for "true", "yes" and numbers other than 0, in any case; else false.
    bool boolean(const QString &key) const;

    void set(const QString &key, const QString &text);
    void set(const QString &key, bool value);
    /// A literal would convert to bool first.
    void set(const QString &key, const char16_t *text) = delete;

private:
    void write(const QString &key, const QVariant &value);
    void keepDamagedFile();

    QSettings m_file;
    bool m_damaged = false;
};
