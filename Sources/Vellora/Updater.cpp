// SPDX-License-Identifier: MIT
#include "Updater.h"

#include "Platform/Platform.h"
#include "UpdateTexts.h"
#include "UpdateWindow.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace {
const QString notificationId = u"update"_s;
} // namespace

Updater::Updater()
{
    connect(&m_schedule, &UpdateSchedule::newVersion, this, &Updater::tellOf);
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

void Updater::tellOf(const QString &version)
{
    const QString shown = UpdateTexts::versionForPeople(version);
    Notification notification;
    notification.title = shown.isEmpty() ? tr("A new version of Vellora is available")
                                         : tr("Vellora %1 is available").arg(shown);
    notification.body = tr("Choose “Check for Updates…” to see what is new and to install it.");
    notification.action = [self = QPointer(this)] {
        if (self) {
            self->checkForUpdates();
        }
    };
    Platform::current().notifications->post(notificationId, notification);
}

void Updater::checkForUpdates()
{
    // The window says it all.
    Platform::current().notifications->withdraw(notificationId);
    m_update.look();
    if (!m_window) {
        m_window = std::make_unique<UpdateWindow>(m_update);
    }
    Platform::current().popupPlacement->makeKeyAndOrderFront(*m_window);
}
