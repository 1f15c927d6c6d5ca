// SPDX-License-Identifier: MIT
#include "Platform/X11/X11RootChange.h"

#include <xcb/damage.h>

#include <algorithm>

namespace {
/// Servers that tell of every change need no second look; this bounds the wait for those that
/// show frames without telling. Half of the time of a frame at 60 Hz.
constexpr std::chrono::milliseconds longestUntold(8);

/// What a picture that is read twice has to stay the same for, where nothing else tells whether
/// it is settled: two frames at 60 Hz.
constexpr std::chrono::milliseconds settled(34);

/// The server's tale of changes to the root window, while this exists.
class RootDamage
{
public:
    explicit RootDamage(const X11Connection &connection)
        : m_connection(connection)
    {
        const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_damage_id);
        if (!extension || !extension->present) {
            return;
        }
        const XcbReply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
            connection.xcb(), xcb_damage_query_version(connection.xcb(), 1, 1), nullptr));
        if (version) {
            m_damage = xcb_generate_id(connection.xcb());
            xcb_damage_create(connection.xcb(), m_damage, connection.root(),
                              XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        }
    }
    ~RootDamage()
    {
        if (m_damage != XCB_NONE) {
            xcb_damage_destroy(m_connection.xcb(), m_damage);
            xcb_flush(m_connection.xcb());
        }
    }
    RootDamage(const RootDamage &) = delete;
    RootDamage &operator=(const RootDamage &) = delete;

    /// Lets the next change be told; those so far count as known.
    void acknowledge()
    {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())}) {
        }
        if (m_damage != XCB_NONE) {
            xcb_damage_subtract(m_connection.xcb(), m_damage, XCB_NONE, XCB_NONE);
        }
    }

private:
    const X11Connection &m_connection;
    xcb_damage_damage_t m_damage = XCB_NONE;
};
} // namespace

bool awaitRootChange(const X11Connection &connection, QDeadlineTimer deadline,
                     const std::function<bool()> &isDone)
{
    RootDamage damage(connection);
    while (connection.isUsable()) {
        damage.acknowledge();
        if (isDone()) {
            return true;
        }
        const std::chrono::milliseconds remaining(deadline.remainingTime());
        if (remaining.count() <= 0) {
            return false;
        }
        connection.awaitInput(std::min(remaining, longestUntold));
    }
    return false;
}

QImage readSettled(const X11Connection &connection, X11RootImage &rootImage, const QRect &pixels,
                   QDeadlineTimer deadline)
{
    QImage latest = rootImage.read(pixels);
    QDeadlineTimer stable(settled);
    awaitRootChange(connection, deadline, [&] {
        const QImage now = rootImage.read(pixels);
        if (now != latest) {
            latest = now;
            stable.setRemainingTime(settled);
        }
        return stable.hasExpired();
    });
    return latest;
}
