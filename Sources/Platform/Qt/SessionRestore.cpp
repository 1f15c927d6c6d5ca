// SPDX-License-Identifier: MIT
#include "Platform/Qt/SessionRestore.h"

#include <QGuiApplication>
#include <QSessionManager>

void stayOutOfRestoredSessions()
{
    const auto refuse = [](QSessionManager &manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    };
    // Answered at once: the manager waits.
    QObject::connect(qApp, &QGuiApplication::saveStateRequest, qApp, refuse, Qt::DirectConnection);
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, refuse, Qt::DirectConnection);
}
