// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayEvents.h"

#include <QJsonArray>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// An event whose beginning is here is here whole very soon.
constexpr std::chrono::milliseconds patience(500);

QString nameOf(SwayEvents::Type type)
{
    switch (type) {
    case SwayEvents::Type::Workspace:
        return u"workspace"_s;
    case SwayEvents::Type::Window:
        return u"window"_s;
    case SwayEvents::Type::Binding:
        return u"binding"_s;
    }
    return {};
}
} // namespace

SwayEvents::SwayEvents(const QList<Type> &types, Handler handler)
    : m_handler(std::move(handler))
{
    QJsonArray names;
    for (const Type type : types) {
        names << nameOf(type);
    }
    const QJsonDocument answer = m_connection.request(
        SwayConnection::Request::Subscribe, QJsonDocument(names).toJson(QJsonDocument::Compact));
    if (!answer.object().value("success"_L1).toBool()) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_connection.socket(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SwayEvents::readEvent);
}

void SwayEvents::readEvent()
{
    const auto event = m_connection.receive(QDeadlineTimer(patience));
    if (!event) {
        // Sway has ended, and the session with it.
        m_notifier->setEnabled(false);
        return;
    }
    // A copy, because the handler may destroy this object.
    const Handler handler = m_handler;
    handler(static_cast<Type>(event->type), event->content.object());
}
