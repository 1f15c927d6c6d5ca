// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Starting the program when the user logs in. Main thread only.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    /// Both answer why they failed, or nothing when they succeeded.
    virtual std::optional<QString> registerItem() = 0;
    virtual std::optional<QString> unregisterItem() = 0;

    /// Whether the session has started this process by itself and not the user: at login, to
    /// restore what ran at the last logout, or for a call on its bus, which says itself what is
    /// wanted.
    virtual bool launchedProgram() const = 0;
};
