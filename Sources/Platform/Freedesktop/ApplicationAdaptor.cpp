// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/ApplicationAdaptor.h"

#include "Platform/Freedesktop/ActivationToken.h"
#include "Platform/Freedesktop/FreedesktopApplicationService.h"

using namespace Qt::StringLiterals;

ApplicationAdaptor::ApplicationAdaptor(FreedesktopApplicationService *service)
    : QDBusAbstractAdaptor(service)
    , m_service(service)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &platform_data)
{
    useActivationTokenOf(platform_data);
    m_service->activate();
}

void ApplicationAdaptor::Open(const QStringList &, const QVariantMap &)
{
}

void ApplicationAdaptor::ActivateAction(const QString &action_name, const QVariantList &,
                                        const QVariantMap &platform_data)
{
    useActivationTokenOf(platform_data);
    m_service->request(action_name);
}
