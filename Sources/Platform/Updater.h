// SPDX-License-Identifier: MIT
#pragma once

/// The service that looks for newer versions of the program. Main thread only.
class Updater
{
public:
    virtual ~Updater() = default;

    /// Begins its background work. False when it cannot.
    virtual bool startUpdater() = 0;

    /// Looks for updates because the user asked, and answers in its own window.
    virtual void checkForUpdates() = 0;
};
