// SPDX-License-Identifier: MIT
#pragma once

#include "SoftwareUpdate.h"
#include "UpdateSchedule.h"

#include <QObject>

#include <memory>

class UpdateWindow;

/// Keeps the program up to date: looks in the background once started, and whenever the user asks.
/// Main thread only.
class Updater : public QObject
{
    Q_OBJECT

public:
    Updater();
    ~Updater() override;

    /// Begins its background work. False when it cannot.
    bool startUpdater();

    /// Opens the window of the update, or brings it to the front, and looks.
    void checkForUpdates();

private:
    void tellOf(const QString &version);

    SoftwareUpdate m_update;
    UpdateSchedule m_schedule;
    std::unique_ptr<UpdateWindow> m_window;
};
