// SPDX-License-Identifier: MIT
#include "Platform/X11/X11WindowManager.h"

namespace {
/// Window managers answer within a few milliseconds; a hung one must not hold up the popup for
/// long. KWin and GNOME, drawing in software on a busy machine, were seen to need more than 100 ms,
/// and ten times as much to do may take ten times as long; without an answer the popup stands by
/// the height of its title bar too low.
constexpr std::chrono::milliseconds longestAnswer(1000);

/// Listens to changes of a window's properties while it exists, on a connection that otherwise
/// gets no events of that window.
class PropertyEvents
{
public:
    PropertyEvents(const X11Connection &connection, xcb_window_t window)
        : m_connection(connection)
        , m_window(window)
    {
        select(XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    ~PropertyEvents() { select(XCB_EVENT_MASK_NO_EVENT); }
    PropertyEvents(const PropertyEvents &) = delete;
    PropertyEvents &operator=(const PropertyEvents &) = delete;

private:
    void select(uint32_t mask)
    {
        const auto cookie = xcb_change_window_attributes_checked(m_connection.xcb(), m_window,
                                                                 XCB_CW_EVENT_MASK, &mask);
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection.xcb(), cookie));
    }

    const X11Connection &m_connection;
    xcb_window_t m_window;
};

const xcb_property_notify_event_t *propertyChange(const xcb_generic_event_t &event,
                                                  xcb_atom_t property)
{
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return nullptr;
    }
    const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(&event);
    return change->atom == property ? change : nullptr;
}
} // namespace

X11WindowManager::X11WindowManager(const X11Connection &connection)
    : m_connection(connection)
{
}

xcb_window_t X11WindowManager::supportingWindow() const
{
    const auto onRoot = m_connection.property(m_connection.root(), "_NET_SUPPORTING_WM_CHECK");
    if (onRoot.isEmpty()) {
        return XCB_WINDOW_NONE;
    }
    // What a window manager that ended left behind names a window that is gone or another's.
    const auto onItself = m_connection.property(onRoot.first(), "_NET_SUPPORTING_WM_CHECK");
    return onItself == onRoot ? onRoot.first() : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

bool X11WindowManager::supports(const char *name) const
{
    return supportingWindow() != XCB_WINDOW_NONE &&
           m_connection.property(m_connection.root(), "_NET_SUPPORTED")
               .contains(m_connection.atom(name));
}

std::optional<QMargins> X11WindowManager::knownExtents(xcb_window_t window) const
{
    // Left, right, top, bottom.
    const auto items = m_connection.property(window, "_NET_FRAME_EXTENTS");
    if (items.size() < 4) {
        return std::nullopt;
    }
    return QMargins(static_cast<int>(items[0]), static_cast<int>(items[2]),
                    static_cast<int>(items[1]), static_cast<int>(items[3]));
}

std::optional<QMargins> X11WindowManager::requestedExtents(xcb_window_t window)
{
    const PropertyEvents events(m_connection, window);
    m_connection.sendToRoot(window, "_NET_REQUEST_FRAME_EXTENTS", {});
    const xcb_atom_t extents = m_connection.atom("_NET_FRAME_EXTENTS");
    m_connection.awaitEvent(
        [&](const xcb_generic_event_t &event) { return propertyChange(event, extents) != nullptr; },
        longestAnswer);
    return knownExtents(window);
}

/// From a window that is shown for a moment, out of sight: some window managers, KWin 5.27 among
/// them, do not tell in advance.
std::optional<QMargins> X11WindowManager::probedExtents()
{
    xcb_connection_t *xcb = m_connection.xcb();
    const xcb_window_t probe = xcb_generate_id(xcb);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    constexpr int16_t outOfSight = -4000;
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, probe, m_connection.root(), outOfSight, outOfSight,
                      100, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    const auto set = [&](const char *name, xcb_atom_t type, const QList<quint32> &items) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, probe, m_connection.atom(name), type, 32,
                            static_cast<uint32_t>(items.size()), items.constData());
    };
    set("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {m_connection.atom("_NET_WM_WINDOW_TYPE_DIALOG")});
    set("_NET_WM_STATE", XCB_ATOM_ATOM,
        {m_connection.atom("_NET_WM_STATE_SKIP_TASKBAR"),
         m_connection.atom("_NET_WM_STATE_SKIP_PAGER")});
    // Neither seen, where there is a compositing manager, nor given the keyboard.
    set("_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL, {0});
    set("_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, {0});
    constexpr quint32 hasInput = 1;
    set("WM_HINTS", XCB_ATOM_WM_HINTS, {hasInput, 0, 0, 0, 0, 0, 0, 0, 0});
    constexpr quint32 userPosition = 1;
    QList<quint32> sizeHints(18, 0);
    sizeHints[0] = userPosition;
    set("WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, sizeHints);

    xcb_map_window(xcb, probe);
    const xcb_atom_t extents = m_connection.atom("_NET_FRAME_EXTENTS");
    m_connection.awaitEvent(
        [&](const xcb_generic_event_t &event) { return propertyChange(event, extents) != nullptr; },
        longestAnswer);
    const auto answer = knownExtents(probe);
    xcb_destroy_window(xcb, probe);
    xcb_flush(xcb);
    return answer;
}

QMargins X11WindowManager::frameExtents(xcb_window_t window)
{
    const xcb_window_t manager = supportingWindow();
    if (manager == XCB_WINDOW_NONE) {
        return {};
    }
    auto extents = knownExtents(window);
    if (!extents && m_answeredBy == manager) {
        return m_answer;
    }
    if (!extents) {
        extents =
            supports("_NET_REQUEST_FRAME_EXTENTS") ? requestedExtents(window) : probedExtents();
    }
    if (extents) {
        m_answer = *extents;
        m_answeredBy = manager;
    }
    return extents.value_or(QMargins());
}

QRect X11WindowManager::clientGeometry(xcb_window_t window) const
{
    xcb_connection_t *qt = qtXcbConnection();
    // On Qt's connection, after what Qt has asked for so far.
    const auto sizeCookie = xcb_get_geometry(qt, window);
    const auto placeCookie = xcb_translate_coordinates(qt, window, m_connection.root(), 0, 0);
    const XcbReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(qt, sizeCookie, nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(qt, placeCookie, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

void X11WindowManager::moveClient(xcb_window_t window, QPoint topLeft)
{
    // Qt gives windows whose geometry was set static gravity: the place asked for is their own, not
    // that of the frame.
    const uint32_t place[] = {static_cast<uint32_t>(topLeft.x()),
                              static_cast<uint32_t>(topLeft.y())};
    xcb_configure_window(qtXcbConnection(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         place);
    xcb_flush(qtXcbConnection());
}

void X11WindowManager::skipTaskbar(xcb_window_t window)
{
    // Qt adds what it wants to what is there when it shows the window.
    const xcb_atom_t states[] = {m_connection.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                 m_connection.atom("_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(qtXcbConnection(), XCB_PROP_MODE_REPLACE, window,
                        m_connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 2, states);
}

xcb_timestamp_t X11WindowManager::serverTime(xcb_window_t window)
{
    const PropertyEvents events(m_connection, window);
    const xcb_atom_t clock = m_connection.atom("_VELLORA_TIME");
    // Appending nothing changes nothing, but is told with the time.
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_APPEND, window, clock, XCB_ATOM_CARDINAL,
                        32, 0, nullptr);
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    m_connection.awaitEvent(
        [&](const xcb_generic_event_t &event) {
            const auto *change = propertyChange(event, clock);
            time = change ? change->time : time;
            return change != nullptr;
        },
        longestAnswer);
    return time;
}

void X11WindowManager::activate(xcb_window_t window)
{
    if (!supports("_NET_ACTIVE_WINDOW")) {
        xcb_set_input_focus(qtXcbConnection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        xcb_flush(qtXcbConnection());
        return;
    }
    // The source "a pager" stands for a direct wish of the user, as which window managers take
    // it; one from a program is weighed against when the user last used another program.
    constexpr quint32 byThePager = 2;
    m_connection.sendToRoot(window, "_NET_ACTIVE_WINDOW", {byThePager, serverTime(window), 0});
}
