// SPDX-License-Identifier: MIT
#include "Updater.h"

#include "Platform/Platform.h"
#include "UpdateWindow.h"

Updater::Updater()
{
    connect(&m_schedule, &UpdateSchedule::newVersion, this, &Updater::newVersion);
    connect(&m_update, &SoftwareUpdate::changed, this, [this] {
        if (m_update.stage() == SoftwareUpdate::Stage::Available) {
            UpdateSchedule::rememberVersion(m_update.update().version);
        }
    });
}

Updater::~Updater() = default;

bool Updater::startUpdater()
{
    return m_schedule.start();
}

void Updater::checkForUpdates()
{
    m_update.look();
    if (!m_window) {
        m_window = std::make_unique<UpdateWindow>(m_update);
    }
    Platform::current().popupPlacement->makeKeyAndOrderFront(*m_window);
}
