// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

class FreedesktopApplicationService;

/// org.freedesktop.Application, as the desktop entry specification describes it. Of the platform
/// data the activation token counts: it lets a window come to the front.
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(FreedesktopApplicationService *service);

public Q_SLOTS:
    /// The program was chosen: a capture by one that runs, nothing by one that this starts.
    void Activate(const QVariantMap &platform_data);
    /// The program opens no files.
    void Open(const QStringList &uris, const QVariantMap &platform_data);
    void ActivateAction(const QString &action_name, const QVariantList &parameter,
                        const QVariantMap &platform_data);

private:
    FreedesktopApplicationService *m_service;
};
