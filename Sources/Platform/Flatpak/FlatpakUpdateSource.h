// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QString>
#include <QVariantMap>

/// Whether the program runs in a Flatpak sandbox.
bool isInFlatpak();

/// Of a copy in a Flatpak sandbox: the portal there looks for newer ones by itself, about every
/// half hour, tells of them, and installs them. It cannot be asked to look, and tells no versions
/// and no notes.
class FlatpakUpdateSource : public UpdateSource
{
    Q_OBJECT

public:
    explicit FlatpakUpdateSource(QString applicationId);
    ~FlatpakUpdateSource() override;

    /// False without a session bus.
    bool start() override;
    std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                     ResultHandler result) override;
    std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                        ResultHandler result) override;

Q_SIGNALS:
    /// The portal has answered the first call, in whatever way.
    void portalAnswered();

private Q_SLOTS:
    void updateAvailable(const QVariantMap &commits);

private:
    UpdateResult knownResult() const;

    QString m_applicationId;
    /// Where the portal tells what it finds; empty before it has answered.
    QString m_monitor;
    bool m_isAsked = false;
    bool m_hasAnswered = false;
    /// A newer version could be installed, or is installed while the old one runs.
    bool m_isAvailable = false;
    bool m_isInstalled = false;
    /// What the newer version is, among all the ones there ever were.
    QString m_commit;
};
