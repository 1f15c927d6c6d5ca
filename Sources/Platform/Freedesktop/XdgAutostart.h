// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/LoginItem.h"

/// The program's entry among the user's autostarted programs,
/// "$XDG_CONFIG_HOME/autostart/<application id>.desktop". Writes and removes nothing else.
class XdgAutostart : public LoginItem
{
public:
    struct Entry
    {
        QString applicationId;
        QString name;
        QString comment;
        /// A name in the icon theme or an absolute path.
        QString icon;
        /// Absolute path of the program.
        QString executablePath;
    };

    explicit XdgAutostart(Entry entry);

    std::optional<QString> registerItem() override;
    /// Nothing to remove is a success: the program does not start at login, as asked.
    std::optional<QString> unregisterItem() override;
    bool launchedProgram() const override;

    QString filePath() const;

private:
    QByteArray contents() const;

    Entry m_entry;
};
