// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/FreedesktopApplicationService.h"

#include "Platform/Freedesktop/ApplicationAdaptor.h"
#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Long enough for a busy program, short enough for a person who waits for the second start.
constexpr int forwardTimeoutMilliseconds = 3000;

bool isKnown(const QString &action)
{
    return action == u"capture" || action == u"settings" || action == u"check-for-updates" ||
           action == u"quit";
}

} // namespace

FreedesktopApplicationService::FreedesktopApplicationService(QString applicationId)
    : m_applicationId(std::move(applicationId))
{
    new ApplicationAdaptor(this);
}

FreedesktopApplicationService::~FreedesktopApplicationService()
{
    FreedesktopApplicationService::release();
}

QString FreedesktopApplicationService::objectPath() const
{
    QString path = u'/' + m_applicationId;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

ApplicationService::Claim FreedesktopApplicationService::claim()
{
    auto bus = sessionBus();
    if (!bus) {
        return Claim::First;
    }
    // The object before the name: whoever sees the name may call at once.
    bus->registerObject(objectPath(), this);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus->interface()->registerService(m_applicationId,
                                          QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
        bus->unregisterObject(objectPath());
        return Claim::Taken;
    }
    m_claimed = true;
    return Claim::First;
}

void FreedesktopApplicationService::release()
{
    m_handler = nullptr;
    if (!std::exchange(m_claimed, false)) {
        return;
    }
    if (auto bus = sessionBus()) {
        bus->unregisterService(m_applicationId);
        bus->unregisterObject(objectPath());
    }
}

bool FreedesktopApplicationService::forward(const QString &action)
{
    const auto bus = sessionBus();
    if (!bus) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_applicationId, objectPath(), u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call << action << QVariantList() << QVariantMap();
    call.setAutoStartService(false);
    const QDBusMessage reply = bus->call(call, QDBus::Block, forwardTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

void FreedesktopApplicationService::setActionHandler(ActionHandler handler)
{
    m_handler = std::move(handler);
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

void FreedesktopApplicationService::request(const QString &action)
{
    // Each one once: a flood of calls before there is a handler asks for no more than one would.
    if (!isKnown(action) || m_pending.contains(action)) {
        return;
    }
    m_pending.append(action);
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

void FreedesktopApplicationService::deliver()
{
    if (!m_handler) {
        return;
    }
    for (const QString &action : std::exchange(m_pending, {})) {
        // A copy: an action may replace the handler.
        const auto handler = m_handler;
        handler(action);
    }
}
