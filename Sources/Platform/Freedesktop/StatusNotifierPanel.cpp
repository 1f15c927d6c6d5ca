// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/StatusNotifierPanel.h"

#include "Platform/Freedesktop/MenuAdaptor.h"
#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/Freedesktop/StatusNotifierAdaptor.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString itemPath = u"/StatusNotifierItem"_s;

/// While a watcher does not answer for longer than this, other panels get the item.
constexpr std::chrono::milliseconds longestWait{2000};

/// When a watcher is given up on. Plasma's, while the session starts, was seen to take 5 seconds on
/// a busy machine.
constexpr int timeoutMilliseconds = 5 * 60 * 1000;

/// Usual sizes of panel icons, once and twice; hosts scale the nearest one.
constexpr int pixmapExtents[] = {16, 22, 24, 32, 44, 48, 64};

/// GNOME's shell, whose extensions run inside it.
const QString gnomeShell = u"org.gnome.Shell"_s;

/// The connection that owns a name; empty where none does.
QString owner(const QString &name)
{
    const auto bus = sessionBus();
    return bus ? bus->interface()->serviceOwner(name).value() : QString();
}

QDBusMessage watcherCall(const QString &interface, const QString &method)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherService, watcherPath, interface, method);
    call.setAutoStartService(false);
    return call;
}

} // namespace

StatusNotifierPanel::StatusNotifierPanel(Identity identity, StatusItemArtwork artwork,
                                         std::shared_ptr<PanelMenu> panelMenu)
    : m_identity(std::move(identity))
    , m_artwork(std::move(artwork))
    , m_panelMenu(std::move(panelMenu))
{
    auto bus = sessionBus();
    if (!bus) {
        m_presence = Presence::Absent;
        return;
    }
    registerStatusNotifierTypes();
    registerMenuTypes();
    auto *owner = new QDBusServiceWatcher(watcherService, *bus,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                watcherChanged(newOwner);
            });
    for (const auto &signal :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        bus->connect(watcherService, watcherPath, watcherService, signal, this, SLOT(askForHost()));
    }
    askForHost();
}

StatusNotifierPanel::~StatusNotifierPanel()
{
    StatusNotifierPanel::hide();
}

void StatusNotifierPanel::setPresence(Presence presence)
{
    if (std::exchange(m_presence, presence) != presence) {
        Q_EMIT presenceChanged();
    }
}

void StatusNotifierPanel::watcherChanged(const QString &newOwner)
{
    if (newOwner.isEmpty()) {
        setPresence(Presence::Absent);
    } else {
        askForHost();
    }
}

void StatusNotifierPanel::askForHost()
{
    QDBusMessage call = watcherCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << watcherService << u"IsStatusNotifierHostRegistered"_s;
    auto *answer = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, timeoutMilliseconds), this);
    QTimer::singleShot(longestWait, answer, [this] {
        if (m_presence == Presence::Unknown) {
            setPresence(Presence::Absent);
        }
    });
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                const bool present = reply.isValid() && reply.value().variant().toBool();
                if (present && m_item) {
                    // Another watcher than the one that knows the item, or the same: it is told.
                    registerItem();
                }
                setPresence(present ? Presence::Present : Presence::Absent);
            });
}

bool StatusNotifierPanel::showsToolTips() const
{
    const QString watcher = owner(watcherService);
    return watcher.isEmpty() || watcher != owner(gnomeShell);
}

QString StatusNotifierPanel::missingExtension() const
{
    return owner(gnomeShell).isEmpty() ? QString()
                                       : u"AppIndicator and KStatusNotifierItem Support"_s;
}

bool StatusNotifierPanel::openItemConnection()
{
    static int count = 0;
    m_connectionName = u"status-item-%1"_s.arg(++count);
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName);
    if (!bus.isConnected()) {
        return false;
    }
    m_item = std::make_unique<QObject>();
    m_adaptor = new StatusNotifierAdaptor(m_item.get(), [this](StatusItemEvent::Type type) {
        // The host gets its answer before the program begins a capture.
        QMetaObject::invokeMethod(
            this, [this, type] { Q_EMIT clicked(type); }, Qt::QueuedConnection);
    });
    bus.registerObject(itemPath, m_item.get());
    auto *menu = new QObject(m_item.get());
    new MenuAdaptor(
        menu, [this] { return makeMenu(); }, m_panelMenu);
    bus.registerObject(m_adaptor->menu().path(), menu);
    // For people who look at the bus; a sandbox allows none.
    bus.registerService(
        u"org.kde.StatusNotifierItem-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(count));
    return true;
}

void StatusNotifierPanel::registerItem()
{
    QDBusMessage call = watcherCall(watcherService, u"RegisterStatusNotifierItem"_s);
    // By the unique name: GNOME's extension watches the owner of another one, which it hears of
    // while it reads the item, and drops the item then, about every second time.
    call << QDBusConnection(m_connectionName).baseService();
    // From the item's own connection: some watchers take the item to be the sender.
    auto *answer = new QDBusPendingCallWatcher(
        QDBusConnection(m_connectionName).asyncCall(call, timeoutMilliseconds), m_item.get());
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                if (finished->isError()) {
                    setPresence(Presence::Absent);
                }
            });
}

void StatusNotifierPanel::show(const Content &content)
{
    const bool isNew = !m_item;
    if (isNew && !openItemConnection()) {
        hide();
        return;
    }
    const QString &description = content.image.accessibilityDescription;
    StatusNotifierContent shown;
    shown.id = m_identity.id;
    // Panels without tooltips show the title, or read it out.
    shown.title = description.isEmpty() || description == m_identity.title
                      ? m_identity.title
                      : u"%1: %2"_s.arg(m_identity.title, description);
    shown.iconName = m_artwork.iconName(content.image);
    shown.iconThemePath = m_artwork.iconThemeFolder();
    // Nobody tints these, and nobody tells the panel's colour.
    for (const int extent : pixmapExtents) {
        const QImage image = m_artwork.renderEdged(content.image, extent);
        if (!image.isNull()) {
            shown.iconPixmap.append(StatusNotifierPixmap::fromImage(image));
        }
    }
    shown.iconAccessibleDescription = description.isEmpty() ? m_identity.title : description;
    shown.name = m_identity.title;
    shown.toolTip = content.toolTip;
    m_adaptor->setContent(shown);
    if (isNew) {
        registerItem();
    }
}

void StatusNotifierPanel::hide()
{
    if (!m_connectionName.isEmpty()) {
        m_item.reset();
        m_adaptor = nullptr;
        QDBusConnection::disconnectFromBus(m_connectionName);
        m_connectionName.clear();
    }
}
