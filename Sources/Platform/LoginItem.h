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
};
