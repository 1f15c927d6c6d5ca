// SPDX-License-Identifier: MIT
#include "Platform/Wayland/QtWayland.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <algorithm>
#include <cstring>
#include <wayland-client.h>

using namespace Qt::StringLiterals;

namespace {
constexpr auto withoutRole = "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";

QPlatformNativeInterface *nativeInterface()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1)
               ? QGuiApplication::platformNativeInterface()
               : nullptr;
}

/// A global that is looked for, and what was bound of it.
struct Search
{
    const wl_interface &interface;
    quint32 version;
    void *proxy = nullptr;
};

const wl_registry_listener registryListener{
    .global =
        [](void *data, wl_registry *registry, uint32_t name, const char *interface,
           uint32_t version) {
            auto &search = *static_cast<Search *>(data);
            if (!search.proxy && std::strcmp(interface, search.interface.name) == 0) {
                search.proxy = wl_registry_bind(registry, name, &search.interface,
                                                std::min(version, search.version));
            }
        },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};
} // namespace

wl_display *qtWaylandDisplay()
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_display *>(native->nativeResourceForIntegration("wl_display"))
                  : nullptr;
}

wl_seat *qtWaylandSeat()
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_seat *>(native->nativeResourceForIntegration("wl_seat"))
                  : nullptr;
}

wl_output *qtWaylandOutput(QScreen &screen)
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_output *>(native->nativeResourceForScreen("output", &screen))
                  : nullptr;
}

wl_surface *qtWaylandSurface(QWindow &window)
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_surface *>(native->nativeResourceForWindow("surface", &window))
                  : nullptr;
}

void leaveQtWindowsWithoutRole()
{
    qputenv(withoutRole, "1");
}

bool areQtWindowsLeftWithoutRole()
{
    return qEnvironmentVariableIntValue(withoutRole) != 0;
}

wl_surface *makeQtWaylandSurface(QWidget &window, QScreen &screen)
{
    window.setScreen(&screen);
    window.winId();
    QWindow *native = window.windowHandle();
    native->setScreen(&screen);
    return qtWaylandSurface(*native);
}

void *bindOnQtConnection(const wl_interface &interface, quint32 version, wl_event_queue *queue)
{
    wl_display *display = qtWaylandDisplay();
    if (!display) {
        return nullptr;
    }
    auto *wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    wl_registry *registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    Search search{interface, version};
    wl_registry_add_listener(registry, &registryListener, &search);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    return search.proxy;
}
