// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/StatusNotifierAdaptor.h"

#include "Platform/Freedesktop/ActivationToken.h"

#include <utility>

using namespace Qt::StringLiterals;

StatusNotifierAdaptor::StatusNotifierAdaptor(QObject *parent,
                                             std::function<void(StatusItemEvent::Type)> clicked)
    : QDBusAbstractAdaptor(parent)
    , m_clicked(std::move(clicked))
{
}

void StatusNotifierAdaptor::setContent(const StatusNotifierContent &content)
{
    const StatusNotifierContent old = std::exchange(m_content, content);
    if (old.title != content.title) {
        Q_EMIT NewTitle();
    }
    if (old.iconName != content.iconName ||
        old.iconAccessibleDescription != content.iconAccessibleDescription ||
        content.iconName.isEmpty()) {
        Q_EMIT NewIcon();
    }
    if (old.toolTip != content.toolTip) {
        Q_EMIT NewToolTip();
    }
}

QString StatusNotifierAdaptor::category() const
{
    return u"ApplicationStatus"_s;
}

QString StatusNotifierAdaptor::status() const
{
    return u"Active"_s;
}

QDBusObjectPath StatusNotifierAdaptor::menu() const
{
    return QDBusObjectPath(u"/MenuBar"_s);
}

StatusNotifierToolTip StatusNotifierAdaptor::toolTip() const
{
    // The text may hold markup, the title may not.
    return {{}, {}, m_content.name, m_content.toolTip.toHtmlEscaped()};
}

void StatusNotifierAdaptor::Activate(int, int)
{
    m_clicked(StatusItemEvent::Type::LeftMouseUp);
}

void StatusNotifierAdaptor::SecondaryActivate(int, int)
{
}

void StatusNotifierAdaptor::ContextMenu(int, int)
{
    m_clicked(StatusItemEvent::Type::RightMouseUp);
}

void StatusNotifierAdaptor::Scroll(int, const QString &)
{
}

void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString &token)
{
    useActivationToken(token);
}
