// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalLoginItem.h"

#include "Platform/Freedesktop/SessionLaunch.h"
#include "Platform/Portal/PortalRequest.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Why the portal's answer is not what was asked for; nothing when it is.
std::optional<QString> failure(bool launches, PortalAnswer answer, const QVariantMap &results)
{
    switch (answer) {
    case PortalAnswer::Denied:
        return u"The user or the desktop does not allow it."_s;
    case PortalAnswer::Failed:
        return u"The desktop's portal (org.freedesktop.portal.Background) did not do it."_s;
    case PortalAnswer::Granted:
        break;
    }
    if (results.value(u"autostart"_s).toBool() != launches) {
        return u"The desktop's portal kept it as it was."_s;
    }
    return std::nullopt;
}
} // namespace

PortalLoginItem::PortalLoginItem(SystemLog &log, QString reason, QStringList command)
    : m_log(log)
    , m_reason(std::move(reason))
    , m_command(std::move(command))
{
}

PortalLoginItem::~PortalLoginItem() = default;

std::optional<QString> PortalLoginItem::registerItem()
{
    ask(true);
    return std::nullopt;
}

std::optional<QString> PortalLoginItem::unregisterItem()
{
    ask(false);
    return std::nullopt;
}

bool PortalLoginItem::launchedProgram() const
{
    return isLaunchedBySession();
}

void PortalLoginItem::ask(bool launches)
{
    const PortalRequest::Call call{u"Background"_s,
                                   u"RequestBackground"_s,
                                   {QString()},
                                   {{u"reason"_s, m_reason},
                                    {u"autostart"_s, launches},
                                    {u"commandline"_s, m_command},
                                    {u"dbus-activatable"_s, false}}};
    // The request lives as long as this object, and its handler with it.
    m_request = std::make_unique<PortalRequest>(
        call, [this, launches](PortalAnswer answer, const QVariantMap &results) {
            if (const auto why = failure(launches, answer, results)) {
                m_log.log(u"LaunchAtLogin toggle failed: "_s + *why);
            }
        });
    m_request->start();
}
