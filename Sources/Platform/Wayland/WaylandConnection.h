// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QSocketNotifier>

#include <algorithm>
#include <functional>
#include <memory>
#include <wayland-client.h>

/// Destroys a proxy by the request or function that its interface has for it.
template <auto Destroy>
struct WaylandDestroy
{
    template <typename Proxy>
    void operator()(Proxy *proxy) const
    {
        Destroy(proxy);
    }
};

/// A proxy that is destroyed with its owner, which dies before the connection.
template <typename Proxy, auto Destroy>
using WaylandPointer = std::unique_ptr<Proxy, WaylandDestroy<Destroy>>;

/// A connection of our own to the compositor that $WAYLAND_DISPLAY names, apart from Qt's: what
/// is awaited on it never takes an event from Qt. Main thread only.
///
/// Without a compositor `isUsable` is false and nothing is offered.
class WaylandConnection
{
public:
    /// One object that the compositor offers.
    struct Global
    {
        quint32 name = 0;
        QByteArray interface;
        quint32 version = 0;
    };

    WaylandConnection();
    ~WaylandConnection();
    WaylandConnection(const WaylandConnection &) = delete;
    WaylandConnection &operator=(const WaylandConnection &) = delete;

    /// Whether the compositor answers.
    bool isUsable() const;

    /// What is offered now, in the compositor's order.
    const QList<Global> &globals() const { return m_globals; }

    /// The version in which an interface is offered, such as "wl_shm"; 0 when it is not.
    quint32 version(const char *interface) const;

    /// Binds a global in its version, but not above `version`.
    template <typename Proxy>
    Proxy *bind(const Global &global, const wl_interface &interface, quint32 version) const
    {
        return static_cast<Proxy *>(wl_registry_bind(m_registry, global.name, &interface,
                                                     std::min(version, global.version)));
    }

    /// Binds the first global of the interface; null when there is none.
    template <typename Proxy>
    Proxy *bindFirst(const wl_interface &interface, quint32 version) const
    {
        const auto found = std::find_if(m_globals.begin(), m_globals.end(), [&](const Global &g) {
            return g.interface == interface.name;
        });
        return found == m_globals.end() ? nullptr : bind<Proxy>(*found, interface, version);
    }

    /// Sends what was requested and handles events until `isDone`. Blocks, until the deadline at
    /// most; false when that passes or the connection breaks.
    bool dispatchUntil(const std::function<bool()> &isDone, QDeadlineTimer deadline);

    /// Waits until the compositor has handled everything requested so far.
    bool roundtrip(QDeadlineTimer deadline);

    /// Sends what was requested, without waiting.
    void flush();

    /// Handles events from the event loop too, from now on.
    void listen();

private:
    void readEvents();

    wl_display *m_display = nullptr;
    wl_registry *m_registry = nullptr;
    QList<Global> m_globals;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
