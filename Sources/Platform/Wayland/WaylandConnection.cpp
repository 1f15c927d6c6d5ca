// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandConnection.h"

#include <chrono>
#include <poll.h>

namespace {
/// When a compositor that does not answer is given up on.
constexpr std::chrono::milliseconds patience(2000);

const wl_registry_listener registryListener{
    .global =
        [](void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version) {
            static_cast<QList<WaylandConnection::Global> *>(data)->append(
                {name, interface, version});
        },
    .global_remove =
        [](void *data, wl_registry *, uint32_t name) {
            static_cast<QList<WaylandConnection::Global> *>(data)->removeIf(
                [name](const WaylandConnection::Global &global) { return global.name == name; });
        },
};

int pollTime(QDeadlineTimer deadline)
{
    return deadline.isForever() ? -1 : static_cast<int>(deadline.remainingTime());
}
} // namespace

WaylandConnection::WaylandConnection()
    : m_display(wl_display_connect(nullptr))
{
    if (!m_display) {
        return;
    }
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &registryListener, &m_globals);
    roundtrip(QDeadlineTimer(patience));
}

WaylandConnection::~WaylandConnection()
{
    m_notifier.reset();
    if (m_display) {
        wl_registry_destroy(m_registry);
        wl_display_flush(m_display);
        wl_display_disconnect(m_display);
    }
}

bool WaylandConnection::isUsable() const
{
    return m_display && wl_display_get_error(m_display) == 0;
}

quint32 WaylandConnection::version(const char *interface) const
{
    const auto found = std::find_if(m_globals.begin(), m_globals.end(), [&](const Global &global) {
        return global.interface == interface;
    });
    return found == m_globals.end() ? 0 : found->version;
}

bool WaylandConnection::dispatchUntil(const std::function<bool()> &isDone, QDeadlineTimer deadline)
{
    while (isUsable() && !isDone()) {
        if (wl_display_prepare_read(m_display) != 0) {
            if (wl_display_dispatch_pending(m_display) < 0) {
                return false;
            }
            continue;
        }
        const bool isSent = wl_display_flush(m_display) >= 0;
        const auto events = static_cast<short>(isSent ? POLLIN : POLLIN | POLLOUT);
        pollfd socket{wl_display_get_fd(m_display), events, 0};
        const int ready = poll(&socket, 1, pollTime(deadline));
        if (ready > 0 && (socket.revents & ~POLLOUT) != 0) {
            if (wl_display_read_events(m_display) < 0) {
                return false;
            }
        } else {
            wl_display_cancel_read(m_display);
            if (ready == 0) {
                return false;
            }
        }
        if (wl_display_dispatch_pending(m_display) < 0) {
            return false;
        }
    }
    return isUsable();
}

bool WaylandConnection::roundtrip(QDeadlineTimer deadline)
{
    if (!isUsable()) {
        return false;
    }
    bool isDone = false;
    static const wl_callback_listener listener{.done = [](void *data, wl_callback *, uint32_t) {
        *static_cast<bool *>(data) = true;
    }};
    const WaylandPointer<wl_callback, wl_callback_destroy> callback(wl_display_sync(m_display));
    wl_callback_add_listener(callback.get(), &listener, &isDone);
    return dispatchUntil([&isDone] { return isDone; }, deadline);
}

void WaylandConnection::flush()
{
    if (isUsable()) {
        wl_display_flush(m_display);
    }
}

void WaylandConnection::listen()
{
    if (m_notifier || !isUsable()) {
        return;
    }
    m_notifier =
        std::make_unique<QSocketNotifier>(wl_display_get_fd(m_display), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readEvents(); });
}

void WaylandConnection::readEvents()
{
    // What has arrived and no more: nothing is ever done.
    dispatchUntil([] { return false; }, QDeadlineTimer(0));
    if (!isUsable()) {
        m_notifier->setEnabled(false);
    }
}
