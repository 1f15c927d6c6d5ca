// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// A folder of resources: the installed program itself, or a resource bundle beside it.
class Bundle
{
public:
    /// The program: its bundle folder is where the executable lies, its resource folder
    /// `../share/vellora` from there, as in an installation under a prefix; else the first
    /// `vellora` in the data folders, the user's before the system's.
    static Bundle main();

    /// The bundle in the folder `path`; absent unless that is a readable folder.
    static std::optional<Bundle> open(const QString &path);

    /// The folder itself.
    QString bundlePath() const { return m_bundlePath; }

    /// The folder that holds the resources; empty when it does not exist.
    QString resourcePath() const { return m_resourcePath; }

    /// The file `name`.`type` among the resources; empty when there is none.
    QString path(const QString &name, const QString &type) const;

    /// A value of the program's own information, such as "CFBundleShortVersionString", its version;
    /// absent for keys that it lacks and for other bundles.
    std::optional<QString> information(const QString &key) const;

private:
    Bundle(QString bundlePath, QString resourcePath);

    QString m_bundlePath;
    QString m_resourcePath;
};
