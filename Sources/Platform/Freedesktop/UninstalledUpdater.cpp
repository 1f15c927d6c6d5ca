// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/UninstalledUpdater.h"

#include <QCoreApplication>
#include <QMessageBox>

#include <utility>

UninstalledUpdater::UninstalledUpdater(QString displayName)
    : m_displayName(std::move(displayName))
{
}

UninstalledUpdater::~UninstalledUpdater()
{
    delete m_window;
}

bool UninstalledUpdater::startUpdater()
{
    return false;
}

void UninstalledUpdater::checkForUpdates()
{
    if (!m_window) {
        m_window = new QMessageBox;
        m_window->setAttribute(Qt::WA_DeleteOnClose);
        m_window->setModal(false);
        m_window->setIcon(QMessageBox::Information);
        m_window->setWindowTitle(
            QCoreApplication::translate("UninstalledUpdater", "%1 Update").arg(m_displayName));
        m_window->setText(
            QCoreApplication::translate("UninstalledUpdater", "%1 cannot look for updates.")
                .arg(m_displayName));
        m_window->setInformativeText(QCoreApplication::translate(
            "UninstalledUpdater", "This copy was not installed from a package source. To get a "
                                  "newer version, go back to where you got this one."));
        m_window->setStandardButtons(QMessageBox::Ok);
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}
