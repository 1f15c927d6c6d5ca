// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ApplicationService.h"

#include <QObject>
#include <QStringList>

/// The application id as a name on the session bus, with the interface
/// org.freedesktop.Application behind it: menus, keys and second starts reach the running program
/// there. Unknown actions are ignored. Without a session bus every start is the first.
class FreedesktopApplicationService : public QObject, public ApplicationService
{
public:
    /// `applicationId` is a reverse domain name, such as "org.example.Editor".
    explicit FreedesktopApplicationService(QString applicationId);
    ~FreedesktopApplicationService() override;

    Claim claim() override;
    void release() override;
    bool forward(const QString &action) override;
    void setActionHandler(ActionHandler handler) override;

    /// The object's path on the bus: the id with slashes for dots and underscores for dashes.
    QString objectPath() const;

private:
    friend class ApplicationAdaptor;
    /// The desktop or its user turned to the program.
    void activate();
    /// Ends the launch after that many answers of the bus.
    void awaitLaunchingCalls(int answers);
    /// Delivers `action`, once the caller on the bus has its answer.
    void request(const QString &action);
    void deliver();

    QString m_applicationId;
    ActionHandler m_handler;
    /// Asked of us before there was a handler: a bus that starts the program asks at once.
    QStringList m_pending;
    bool m_claimed = false;
    /// Until what the bus hands over together with the name has arrived: the call that made it
    /// start the program, if one did.
    bool m_isLaunching = false;
};
