// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/LoginItem.h"
#include "Platform/SystemLog.h"

#include <QStringList>

#include <memory>

class PortalRequest;

/// Launch at login for a program in a sandbox, which cannot write the user's autostarted programs:
/// asks the Background portal, which may ask the user. The answer comes later; a failure is then a
/// line of the log, as that of any login item is.
class PortalLoginItem : public LoginItem
{
public:
    /// `reason` is shown to the user; `command` starts the program inside the sandbox.
    PortalLoginItem(SystemLog &log, QString reason, QStringList command);
    ~PortalLoginItem() override;

    /// Both make a request and answer nothing yet. A later one takes the place of one that is still
    /// without an answer.
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;
    bool launchedProgram() const override;

private:
    void ask(bool launches);

    SystemLog &m_log;
    QString m_reason;
    QStringList m_command;
    std::unique_ptr<PortalRequest> m_request;
};
