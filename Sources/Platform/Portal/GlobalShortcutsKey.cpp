// SPDX-License-Identifier: MIT
#include "Platform/Portal/GlobalShortcutsKey.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/Portal/PortalShortcut.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;
const QString shortcutId = u"capture"_s;
/// There was no window of ours that the question could belong to.
const QString noParentWindow;
constexpr auto noLimit = 0ms;

/// As the portal has bound it; nothing when the answer does not name it.
std::optional<PortalShortcut> ourShortcut(const QVariantMap &results)
{
    const QList<PortalShortcut> bound = portalShortcuts(results.value(u"shortcuts"_s));
    const auto ours = std::ranges::find(bound, shortcutId, &PortalShortcut::id);
    return ours == bound.end() ? std::nullopt : std::optional(*ours);
}
} // namespace

GlobalShortcutsKey::GlobalShortcutsKey(KeyTap::Callback callback, GivenKeys &given, SystemLog &log,
                                       std::chrono::milliseconds sessionTimeLimit)
    : m_callback(std::move(callback))
    , m_given(&given)
    , m_log(log)
    , m_sessionTimeLimit(sessionTimeLimit)
{
    registerPortalShortcut();
    auto bus = sessionBus();
    if (!bus) {
        return;
    }
    bus->connect(service, path, interface, u"Activated"_s, this,
                 SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    bus->connect(service, path, interface, u"ShortcutsChanged"_s, this,
                 SLOT(shortcutsChanged(QDBusMessage)));
    m_restarts.setConnection(*bus);
    m_restarts.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    m_restarts.addWatchedService(service);
    connect(&m_restarts, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (!m_session.isEmpty()) {
            openSession();
        }
    });
}

GlobalShortcutsKey::~GlobalShortcutsKey()
{
    closeSession();
}

bool GlobalShortcutsKey::setCombination(const KeyCombination &combination)
{
    closeSession();
    m_combination = combination;
    m_keyName = WaylandKeyboard().keysymNames(combination.keyCode).value(0);
    if (m_keyName.isEmpty()) {
        return false;
    }
    openSession();
    return true;
}

void GlobalShortcutsKey::openSession()
{
    ask({u"GlobalShortcuts"_s,
         u"CreateSession"_s,
         {},
         {{u"session_handle_token"_s, portalToken()}}},
        m_sessionTimeLimit, [this](const QVariantMap &results) {
            // A text by mistake, which portals keep up.
            m_session = results.value(u"session_handle"_s).toString();
            if (!m_session.startsWith(path)) {
                m_session.clear();
                end(End::Failed);
                return;
            }
            if (auto bus = sessionBus()) {
                bus->connect(service, m_session, sessionInterface, u"Closed"_s, this,
                             SLOT(closed()));
            }
            bindShortcut();
        });
}

void GlobalShortcutsKey::bindShortcut()
{
    const PortalShortcut shortcut{
        shortcutId,
        {{u"description"_s, QCoreApplication::translate("GlobalAccelKey", "Capture Text")},
         {u"preferred_trigger"_s, portalTrigger(m_combination.flags, m_keyName)}}};
    ask({u"GlobalShortcuts"_s,
         u"BindShortcuts"_s,
         {QVariant::fromValue(QDBusObjectPath(m_session)),
          QVariant::fromValue(QList<PortalShortcut>{shortcut}), noParentWindow},
         {}},
        noLimit, [this](const QVariantMap &results) {
            const auto ours = ourShortcut(results);
            if (!ours) {
                end(End::Failed);
                return;
            }
            tellDescription(ours->properties.value(u"trigger_description"_s).toString());
        });
}

void GlobalShortcutsKey::ask(PortalRequest::Call call, std::chrono::milliseconds limit,
                             std::function<void(const QVariantMap &)> whenGranted)
{
    m_request = std::make_unique<PortalRequest>(
        std::move(call), [this, whenGranted = std::move(whenGranted)](PortalAnswer answer,
                                                                      const QVariantMap &results) {
            // GNOME 48 calls a shortcut that its user has added a failure, but names it.
            if (answer == PortalAnswer::Granted ||
                (answer == PortalAnswer::Failed && ourShortcut(results))) {
                whenGranted(results);
            } else {
                end(answer == PortalAnswer::Denied ? End::Denied : End::Failed);
            }
        });
    m_request->setLimit(limit);
    m_request->start();
}

void GlobalShortcutsKey::tellDescription(const QString &description)
{
    if (description == std::exchange(m_description, description)) {
        return;
    }
    const bool isOurs =
        description.isEmpty() || describesTrigger(description, m_combination.flags, m_keyName);
    if (m_given) {
        m_given->setDescription(isOurs ? QString() : description);
    }
    if (!isOurs) {
        m_log.logVerbatim(u"The desktop gave the shortcut other keys: %1"_s.arg(description));
    }
}

void GlobalShortcutsKey::activated(const QDBusObjectPath &session, const QString &shortcut,
                                   qulonglong /*time*/, const QVariantMap & /*options*/)
{
    if (!m_session.isEmpty() && session.path() == m_session && shortcut == shortcutId) {
        m_callback(m_combination);
    }
}

void GlobalShortcutsKey::shortcutsChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (m_session.isEmpty() || arguments.size() < 2 ||
        qvariant_cast<QDBusObjectPath>(arguments.at(0)).path() != m_session) {
        return;
    }
    for (const PortalShortcut &each : portalShortcuts(arguments.at(1))) {
        if (each.id == shortcutId) {
            tellDescription(each.properties.value(u"trigger_description"_s).toString());
        }
    }
}

void GlobalShortcutsKey::closed()
{
    m_session.clear();
    end(End::Failed);
}

void GlobalShortcutsKey::closeSession()
{
    m_request.reset();
    m_description.clear();
    if (m_given) {
        m_given->setDescription({});
    }
    auto bus = sessionBus();
    if (m_session.isEmpty() || !bus) {
        return;
    }
    bus->disconnect(service, m_session, sessionInterface, u"Closed"_s, this, SLOT(closed()));
    bus->send(QDBusMessage::createMethodCall(service, m_session, sessionInterface, u"Close"_s));
    m_session.clear();
}

void GlobalShortcutsKey::end(End end)
{
    closeSession();
    if (const auto handler = std::exchange(onEnd, nullptr)) {
        handler(end);
    }
}
