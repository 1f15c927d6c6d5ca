// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

/// The program's one place in the session: other starts of it and the desktop's own menus and
/// keys reach the running one here. Main thread only.
class ApplicationService
{
public:
    enum class Claim {
        /// We are the one, or there is no session bus on which anybody could tell.
        First,
        /// Another one runs already.
        Taken,
    };

    /// Called with the name of an action: "capture", "settings", "check-for-updates" or "quit".
    using ActionHandler = std::function<void(const QString &)>;

    virtual ~ApplicationService() = default;

    /// Takes the application's id in the session.
    virtual Claim claim() = 0;

    /// Gives the id back and delivers nothing any more: we are about to end.
    virtual void release() = 0;

    /// Asks the program that holds the id to do `action`. False when it did not answer.
    virtual bool forward(const QString &action) = 0;

    /// Delivers the actions asked of us from now on. The activation for which the session bus has
    /// started us asks for nothing; every later one asks for "capture".
    virtual void setActionHandler(ActionHandler handler) = 0;
};
