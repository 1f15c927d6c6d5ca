// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Platform.h"

#include "Platform/Platform.h"
#include "Platform/SocketPeer.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11EventMonitor.h"
#include "Platform/X11/X11KeyTap.h"
#include "Platform/X11/X11OverlayKeyboard.h"
#include "Platform/X11/X11OverlaySurface.h"
#include "Platform/X11/X11Overlays.h"
#include "Platform/X11/X11PopupPlacement.h"
#include "Platform/X11/X11ScreenRecording.h"
#include "Platform/X11/X11ServerEnd.h"

#include <QScreen>

#include <xcb/randr.h>

QtScreens::PixelGeometry x11PixelGeometry()
{
    return [connection = std::make_shared<X11Connection>()](const QScreen &screen) {
        if (!connection->isUsable()) {
            return QRect();
        }
        const XcbReply<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
            connection->xcb(), xcb_randr_get_monitors(connection->xcb(), connection->root(), true),
            nullptr));
        if (!monitors) {
            return QRect();
        }
        // Qt keeps the origin in pixels; only the size is rounded to points.
        for (auto each = xcb_randr_get_monitors_monitors_iterator(monitors.get()); each.rem > 0;
             xcb_randr_monitor_info_next(&each)) {
            const xcb_randr_monitor_info_t &monitor = *each.data;
            const QSizeF expected = QSizeF(screen.size()) * screen.devicePixelRatio();
            const bool hasSize = qAbs(expected.width() - monitor.width) <= 2 &&
                                 qAbs(expected.height() - monitor.height) <= 2;
            if (hasSize && QPoint(monitor.x, monitor.y) == screen.geometry().topLeft()) {
                return QRect(monitor.x, monitor.y, monitor.width, monitor.height);
            }
        }
        return QRect();
    };
}

bool isX11Desktop()
{
    return qtXcbConnection() != nullptr;
}

bool isXwaylandDesktop()
{
    const X11Connection connection;
    if (!isX11Desktop() || !connection.isUsable()) {
        return false;
    }
    // Its extension tells, from 23.1 on; before, the names of its outputs.
    const QByteArray name = "XWAYLAND";
    const XcbReply<xcb_query_extension_reply_t> extension(xcb_query_extension_reply(
        connection.xcb(),
        xcb_query_extension(connection.xcb(), static_cast<uint16_t>(name.size()), name.data()),
        nullptr));
    if (extension && extension->present) {
        return true;
    }
    const XcbReply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection.xcb(),
            xcb_randr_get_screen_resources_current(connection.xcb(), connection.root()), nullptr));
    if (!resources || xcb_randr_get_screen_resources_current_outputs_length(resources.get()) == 0) {
        return false;
    }
    const xcb_randr_output_t first =
        *xcb_randr_get_screen_resources_current_outputs(resources.get());
    const XcbReply<xcb_randr_get_output_info_reply_t> output(xcb_randr_get_output_info_reply(
        connection.xcb(),
        xcb_randr_get_output_info(connection.xcb(), first, resources->config_timestamp), nullptr));
    return output &&
           QByteArray(reinterpret_cast<const char *>(xcb_randr_get_output_info_name(output.get())),
                      xcb_randr_get_output_info_name_length(output.get()))
               .startsWith(name);
}

qint64 x11ListeningProcess()
{
    xcb_connection_t *connection = qtXcbConnection();
    return connection ? processListeningAt(xcb_get_file_descriptor(connection)) : 0;
}

void addX11Services(Platform &platform)
{
    tellServerEndInOneLine();
    const auto connection = std::make_shared<X11Connection>();
    const auto overlays = std::make_shared<X11Overlays>();
    const auto keyboard = std::make_shared<X11OverlayKeyboard>(connection, overlays);
    platform.screenRecording =
        std::make_unique<X11ScreenRecording>(connection, overlays, *platform.screens);
    platform.overlaySurface = std::make_unique<X11OverlaySurface>(connection, overlays, keyboard);
    platform.eventMonitor = std::make_unique<X11EventMonitor>(*platform.screens, keyboard);
    platform.keyTap = std::make_unique<X11KeyTap>();
    platform.popupPlacement = std::make_unique<X11PopupPlacement>(connection, *platform.screens);
}

std::unique_ptr<PopupPlacement> makeX11PopupPlacement(const Screens &screens)
{
    return std::make_unique<X11PopupPlacement>(std::make_shared<X11Connection>(), screens);
}
