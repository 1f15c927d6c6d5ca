// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/FreedesktopApplicationService.h"

#include "Platform/Freedesktop/ApplicationAdaptor.h"
#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Long enough for a busy program, short enough for a person who waits for the second start.
constexpr int forwardTimeoutMilliseconds = 3000;

/// The bus delivers in order, so what it kept for the program comes before an answer to what the
/// program asks. Qt may hand over an answer just before the calls that it kept back itself, but not
/// the one after that.
constexpr int answersOfLaunch = 2;

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
    m_isLaunching = true;
    // From the event loop: until that runs, Qt keeps calls back, but not answers.
    QMetaObject::invokeMethod(
        this, [this] { awaitLaunchingCalls(answersOfLaunch); }, Qt::QueuedConnection);
    return Claim::First;
}

void FreedesktopApplicationService::awaitLaunchingCalls(int answers)
{
    const auto bus = sessionBus();
    if (answers == 0 || !bus) {
        m_isLaunching = false;
        return;
    }
    const QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetId"_s);
    auto *answer = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, answers] {
        answer->deleteLater();
        awaitLaunchingCalls(answers - 1);
    });
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

void FreedesktopApplicationService::activate()
{
    if (!m_isLaunching) {
        request(u"capture"_s);
    }
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
