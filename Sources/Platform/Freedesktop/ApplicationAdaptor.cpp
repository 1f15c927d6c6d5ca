// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/ApplicationAdaptor.h"

#include "Platform/Freedesktop/FreedesktopApplicationService.h"

using namespace Qt::StringLiterals;

ApplicationAdaptor::ApplicationAdaptor(FreedesktopApplicationService *service)
    : QDBusAbstractAdaptor(service)
    , m_service(service)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &)
{
    m_service->request(u"capture"_s);
}

void ApplicationAdaptor::Open(const QStringList &, const QVariantMap &)
{
}

void ApplicationAdaptor::ActivateAction(const QString &action_name, const QVariantList &,
                                        const QVariantMap &)
{
    m_service->request(action_name);
}
