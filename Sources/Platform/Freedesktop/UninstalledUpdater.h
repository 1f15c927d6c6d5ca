// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Updater.h"

#include <QPointer>
#include <QString>

class QMessageBox;

/// The updater of a copy that no package manager knows, such as one run from where it was built:
/// there is no place where newer versions of it would appear, and it says so when asked.
class UninstalledUpdater : public Updater
{
public:
    explicit UninstalledUpdater(QString displayName);
    ~UninstalledUpdater() override;

    /// Always false: there is nothing to begin.
    bool startUpdater() override;
    /// Shows the window that says so, or brings it to the front.
    void checkForUpdates() override;

private:
    QString m_displayName;
    QPointer<QMessageBox> m_window;
};
