// SPDX-License-Identifier: MIT
#include "Platform/X11/XEmbedTray.h"

#include "Platform/X11/XEmbedIcon.h"

#include <QCursor>
#include <QSocketNotifier>
#include <QTextDocument>
#include <QToolTip>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// _NET_SYSTEM_TRAY_OPCODE's request to be docked.
constexpr quint32 requestDock = 0;

/// As Qt's own tooltips wait.
constexpr std::chrono::milliseconds toolTipDelay{700};

/// _NET_SYSTEM_TRAY_COLORS: twelve 16-bit channels, of which the first three are for pictures.
std::optional<QColor> foreground(const X11Connection &x, xcb_window_t tray)
{
    const QList<quint32> channels = x.property(tray, "_NET_SYSTEM_TRAY_COLORS");
    if (channels.size() < 3) {
        return std::nullopt;
    }
    return QColor::fromRgba64(static_cast<ushort>(channels[0]), static_cast<ushort>(channels[1]),
                              static_cast<ushort>(channels[2]));
}

/// The program's name, and what is told below it.
QString richToolTip(const QString &title, const QString &text)
{
    // A message with a "<" in it is no markup; its lines stay lines.
    return u"<p style='white-space:pre'><b>"_s + title.toHtmlEscaped() + u"</b><br>"_s +
           text.toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</p>"_s;
}

} // namespace

XEmbedTray::XEmbedTray(QString title, StatusItemArtwork artwork)
    : m_title(std::move(title))
    , m_artwork(std::move(artwork))
{
    m_toolTipDelay.setSingleShot(true);
    m_toolTipDelay.setInterval(toolTipDelay);
    m_toolTipDelay.callOnTimeout(this, [this] {
        if (m_content) {
            QToolTip::showText(QCursor::pos(), richToolTip(m_title, m_content->toolTip));
        }
    });
    if (!m_x.isUsable()) {
        return;
    }
    const QByteArray selection = "_NET_SYSTEM_TRAY_S" + QByteArray::number(m_x.screenNumber());
    m_selection = m_x.atom(selection.constData());
    // A tray announces itself to those who listen for changes of the root window's structure.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_x.xcb(), m_x.root(), XCB_CW_EVENT_MASK, &events);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_x.xcb()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XEmbedTray::readEvents);
    findTray();
}

XEmbedTray::~XEmbedTray() = default;

StatusItemPanel::Presence XEmbedTray::presence() const
{
    return m_tray == XCB_NONE ? Presence::Absent : Presence::Present;
}

void XEmbedTray::setTray(xcb_window_t tray)
{
    const Presence before = presence();
    m_tray = tray;
    if (presence() != before) {
        Q_EMIT presenceChanged();
    }
}

xcb_window_t XEmbedTray::selectionOwner() const
{
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_x.xcb(), xcb_get_selection_owner(m_x.xcb(), m_selection), nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_NONE);
}

void XEmbedTray::findTray()
{
    xcb_window_t tray = selectionOwner();
    // Watched, then asked for again: it may have gone between the answer and the watch.
    for (xcb_window_t watched = XCB_NONE; tray != watched; tray = selectionOwner()) {
        watched = tray;
        const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_x.xcb(), tray, XCB_CW_EVENT_MASK, &events);
    }
    m_icon.reset();
    setTray(tray);
    dock();
    // Waiting for the replies may have read events that the socket does not announce again.
    QMetaObject::invokeMethod(this, &XEmbedTray::readEvents, Qt::QueuedConnection);
}

void XEmbedTray::dock()
{
    if (m_tray == XCB_NONE || !m_content || m_icon) {
        return;
    }
    const QList<quint32> visual = m_x.property(m_tray, "_NET_SYSTEM_TRAY_VISUAL");
    m_icon = std::make_unique<XEmbedIcon>(m_x, visual.isEmpty() ? XCB_NONE : visual.first());
    m_icon->setForeground(foreground(m_x, m_tray));
    m_icon->setTitle(m_title);

    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_tray;
    message.type = m_x.atom("_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDock;
    message.data.data32[2] = m_icon->window();
    xcb_send_event(m_x.xcb(), 0, m_tray, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_x.xcb());
}

void XEmbedTray::show(const Content &content)
{
    if (!m_x.isUsable()) {
        return;
    }
    m_content = std::make_unique<Content>(content);
    dock();
    if (m_icon) {
        const QString &description = content.image.accessibilityDescription;
        m_icon->setTitle(description.isEmpty() || description == m_title
                             ? m_title
                             : u"%1: %2"_s.arg(m_title, description));
        m_icon->draw(m_artwork, content.image);
        xcb_flush(m_x.xcb());
    }
    QMetaObject::invokeMethod(this, &XEmbedTray::readEvents, Qt::QueuedConnection);
}

void XEmbedTray::hide()
{
    m_content.reset();
    m_icon.reset();
    m_toolTipDelay.stop();
    if (m_x.isUsable()) {
        xcb_flush(m_x.xcb());
    }
}

void XEmbedTray::readEvents()
{
    while (true) {
        if (xcb_connection_has_error(m_x.xcb())) {
            // The server is gone, and its socket would be readable for ever.
            m_notifier->setEnabled(false);
            return;
        }
        const XcbReply<xcb_generic_event_t> event(xcb_poll_for_event(m_x.xcb()));
        if (!event) {
            xcb_flush(m_x.xcb());
            return;
        }
        handle(*event);
    }
}

void XEmbedTray::handle(const xcb_generic_event_t &event)
{
    const auto isIcon = [this](xcb_window_t window) {
        return m_icon && m_icon->window() == window;
    };
    const auto draw = [this] {
        if (m_content) {
            m_icon->draw(m_artwork, m_content->image);
        }
    };
    switch (event.response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE: {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == m_x.atom("MANAGER") && message.data.data32[1] == m_selection) {
            findTray();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == m_tray) {
            findTray();
        }
        break;
    case XCB_REPARENT_NOTIFY: {
        const auto &reparent = reinterpret_cast<const xcb_reparent_notify_event_t &>(event);
        if (isIcon(reparent.window) && reparent.parent == m_x.root()) {
            // The tray let go of it: not to be left on the root window.
            m_icon.reset();
        }
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (change.window == m_tray && change.atom == m_x.atom("_NET_SYSTEM_TRAY_COLORS") &&
            m_icon) {
            m_icon->setForeground(foreground(m_x, m_tray));
            draw();
        }
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_configure_notify_event_t &>(event);
        if (isIcon(change.window)) {
            m_icon->setSize({change.width, change.height});
            draw();
        }
        break;
    }
    case XCB_EXPOSE: {
        const auto &expose = reinterpret_cast<const xcb_expose_event_t &>(event);
        if (isIcon(expose.window) && expose.count == 0) {
            draw();
        }
        break;
    }
    case XCB_ENTER_NOTIFY:
        m_toolTipDelay.start();
        break;
    case XCB_LEAVE_NOTIFY:
    case XCB_BUTTON_PRESS:
        m_toolTipDelay.stop();
        QToolTip::hideText();
        break;
    case XCB_BUTTON_RELEASE: {
        const auto &release = reinterpret_cast<const xcb_button_release_event_t &>(event);
        const bool isInside = m_icon && m_icon->contains({release.event_x, release.event_y});
        if (isInside && release.detail == XCB_BUTTON_INDEX_1) {
            Q_EMIT clicked(StatusItemEvent::Type::LeftMouseUp);
        } else if (isInside && release.detail == XCB_BUTTON_INDEX_3) {
            Q_EMIT clicked(StatusItemEvent::Type::RightMouseUp);
        }
        break;
    }
    default:
        break;
    }
}
