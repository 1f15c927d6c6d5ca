// SPDX-License-Identifier: MIT
#include "Support/GlobalShortcutsPortal.h"

#include <QDBusVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString connectionName = u"portal"_s;
} // namespace

GlobalShortcutsPortal::GlobalShortcutsPortal()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{
    registerPortalShortcut();
    m_isUp = m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath) &&
             m_bus.registerService(service);
    QDBusConnection::sessionBus().connect(service, path, shortcutsInterface, u"Activated"_s, this,
                                          SLOT(pressed()));
}

GlobalShortcutsPortal::~GlobalShortcutsPortal()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(path, QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(connectionName);
}

QString GlobalShortcutsPortal::introspect(const QString & /*path*/) const
{
    return {};
}

void GlobalShortcutsPortal::send(const QString &from, const QString &interface, const QString &name,
                                 const QVariantList &arguments)
{
    QDBusMessage signal = QDBusMessage::createSignal(from, interface, name);
    signal.setArguments(arguments);
    m_bus.send(signal);
}

void GlobalShortcutsPortal::press(const QString &shortcut, const QString &of)
{
    const QStringList sessions{of, session, path};
    const auto first = std::ranges::find_if_not(sessions, &QString::isEmpty);
    send(path, shortcutsInterface, u"Activated"_s,
         {QVariant::fromValue(QDBusObjectPath(*first)), shortcut, qulonglong(0), QVariantMap()});
}

void GlobalShortcutsPortal::change(const QString &text)
{
    send(path, shortcutsInterface, u"ShortcutsChanged"_s,
         {QVariant::fromValue(QDBusObjectPath(session)),
          QVariant::fromValue(
              QList<PortalShortcut>{{u"capture"_s, {{u"trigger_description"_s, text}}}})});
}

void GlobalShortcutsPortal::closeSession()
{
    send(session, u"org.freedesktop.portal.Session"_s, u"Closed"_s, {QVariantMap()});
}

bool GlobalShortcutsPortal::handleMessage(const QDBusMessage &message,
                                          const QDBusConnection & /*connection*/)
{
    const QString member = message.member();
    if (member == u"Register") {
        registered << message.arguments().constFirst().toString();
        return m_bus.send(message.createReply());
    }
    wasAskedBeforeRegistration = wasAskedBeforeRegistration || registered.isEmpty();
    if (member == u"Get") {
        return m_isOffered &&
               m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(uint(1)))));
    }
    // Not what was meant for a portal of before.
    if (member == u"Close" && m_objects.contains(message.path())) {
        (message.interface().endsWith(u"Session") ? closed : calledOff) << message.path();
        return m_bus.send(message.createReply());
    }
    if (member == u"CreateSession" && oddity != NoSession) {
        createSession(message);
        return true;
    }
    if (member == u"BindShortcuts" && oddity != NoShortcuts) {
        bindShortcuts(message);
        return true;
    }
    return false;
}

void GlobalShortcutsPortal::createSession(const QDBusMessage &message)
{
    const auto options = qdbus_cast<QVariantMap>(message.arguments().constLast());
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    request = u"%1/request/%2/%3"_s.arg(path, sender, options.value(u"handle_token"_s).toString());
    session = u"%1/session/%2/%3"_s.arg(path, sender,
                                        options.value(u"session_handle_token"_s).toString());
    m_objects << request << session;
    QVariantMap results{{u"session_handle"_s, session}};
    if (oddity == NamelessSession) {
        results.clear();
    } else if (oddity == NumberForSession) {
        results.insert(u"session_handle"_s, 7);
    }
    if (!isSessionSilent) {
        answer(oddity == RefusedSession ? 2 : 0, results);
    }
    m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
}

void GlobalShortcutsPortal::bindShortcuts(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    const auto options = qdbus_cast<QVariantMap>(arguments.constLast());
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    request = u"%1/request/%2/%3"_s.arg(path, sender, options.value(u"handle_token"_s).toString());
    m_objects << request;
    QList<PortalShortcut> shortcuts = portalShortcuts(arguments.at(1));
    bound << shortcuts;
    for (PortalShortcut &each : shortcuts) {
        each.properties.insert(u"trigger_description"_s, description);
    }
    QVariant given = QVariant::fromValue(shortcuts);
    switch (oddity) {
    case EmptyShortcuts:
        given = QVariant::fromValue(QList<PortalShortcut>());
        break;
    case OtherShortcut:
        given = QVariant::fromValue(QList<PortalShortcut>{{u"other"_s, {}}});
        break;
    case TextForShortcuts:
        given = u"capture"_s;
        break;
    default:
        break;
    }
    if (!isBindSilent) {
        answer(oddity == UnknownResponse ? 7 : bindResponse, {{u"shortcuts"_s, given}});
        m_isAnswered = true;
    }
    m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
}

void GlobalShortcutsPortal::answer(uint response, const QVariantMap &results)
{
    send(request, u"org.freedesktop.portal.Request"_s, u"Response"_s, {response, results});
}
