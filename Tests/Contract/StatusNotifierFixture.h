// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PanelMenu.h"
#include "Platform/Qt/PanelStatusBar.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <memory>

inline const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
inline const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

/// A panel's side: the watcher and, once `setHost` is called, a host.
class Watcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    explicit Watcher(bool hasHost = true)
        : m_name(QStringLiteral("watcher-%1").arg(++count))
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
        , m_hasHost(hasHost)
    {
        m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                             QDBusConnection::ExportAllContents);
        m_owns = m_bus.registerService(watcherName);
    }
    ~Watcher() override { QDBusConnection::disconnectFromBus(m_name); }

    bool owns() const { return m_owns; }
    bool hasHost() const { return m_hasHost; }
    void setHost(bool hasHost)
    {
        m_hasHost = hasHost;
        if (hasHost) {
            Q_EMIT StatusNotifierHostRegistered();
        } else {
            Q_EMIT StatusNotifierHostUnregistered();
        }
    }
    QDBusConnection bus() const { return m_bus; }

    /// The registered items that are still on the bus.
    QStringList items() const
    {
        QStringList present;
        for (const QString &item : m_items) {
            if (m_bus.interface()->isServiceRegistered(item)) {
                present.append(item);
            }
        }
        return present;
    }

    /// What the item answers, the error's name if it is one.
    QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                     const QVariantList &arguments = {}) const;
    QVariant property(const QString &name) const;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service) { m_items.append(service); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    static inline int count = 0;
    QString m_name;
    QDBusConnection m_bus;
    bool m_hasHost;
    bool m_owns = false;
    QStringList m_items;
};

/// An item on the session bus, for tests to play the panel's side.
class StatusNotifierFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

protected:
    /// Notes its clicks.
    void makeItem();

    std::unique_ptr<PanelStatusBar> m_bar;
    std::unique_ptr<StatusItem> m_item;
    std::shared_ptr<StatusItemButton> m_button;
    std::shared_ptr<PanelMenu> m_panelMenu = std::make_shared<PanelMenu>();
    QList<StatusItemEvent::Type> m_clicks;
};
